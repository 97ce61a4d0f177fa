#pragma once
// A file in the test's working folder that is removed again at the end of the test.
#include <cstdio>
#include <string>

namespace hublet {
namespace testing {

class ScratchFile {
 public:
  // Writes bytes to a file with a name unique to this process and test.
  explicit ScratchFile(const std::string& bytes);
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  void Rewrite(const std::string& bytes) const;
  // The absolute path, as the profile reader of this build takes it.
  const std::wstring& path() const { return path_; }

 private:
  std::string name_;
  std::wstring path_;
};

}  // namespace testing
}  // namespace hublet
