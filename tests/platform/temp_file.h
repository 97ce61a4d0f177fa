#pragma once
// Files for a test to read, made in the current folder (the build folder under ctest) and
// removed afterwards. Paths are absolute: a bare name would send the Windows profile API
// to the Windows folder.
#include <string>

namespace hublet {
namespace testutil {

class TempFile {
 public:
  TempFile();  // a fresh name; nothing is created yet
  ~TempFile();
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  void Write(const std::string& bytes);
  void MakeDirectory();
  const std::wstring& Path() const { return path_; }

 private:
  std::string name_;
  std::wstring path_;
};

}  // namespace testutil
}  // namespace hublet
