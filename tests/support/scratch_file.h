#pragma once
// A file (or folder) in the test's working folder, removed again at the end of the test.
// Paths are absolute: a bare name would send the Windows profile API to the Windows folder.
#include <string>

namespace hublet {
namespace testing {

class ScratchFile {
 public:
  // A fresh name; nothing is created yet.
  ScratchFile();
  // A file holding bytes.
  explicit ScratchFile(const std::string& bytes) : ScratchFile() { Rewrite(bytes); }
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  void Rewrite(const std::string& bytes) const;
  void MakeDirectory() const;
  const std::wstring& path() const { return path_; }

 private:
  std::string name_;
  std::wstring path_;
};

}  // namespace testing
}  // namespace hublet
