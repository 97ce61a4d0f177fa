#pragma once
// The files the tool reads itself (the checker's bytes) and the paths it hands to the
// plug-in's profile reader.
#include <cstdio>
#include <functional>
#include <string>

namespace hublet {
namespace tool {

// The content of a regular file; false with a reason in error when it cannot be read. With
// readEnough, reading stops once it says the bytes so far tell all that will be used of them
// (asked after each part read), so that a file of no use past its start costs only that.
bool ReadFileBytes(const std::string& path, std::string& bytes, std::string& error,
                   const std::function<bool(const std::string& bytes)>& readEnough = nullptr);

// Whether path is a regular file that opens for reading, without reading it; false with
// a reason in error when not.
bool CanReadFile(const std::string& path, std::string& error);

// A temporary file for output that must wait for other output to be written first, so
// that it does not wait in memory. It is gone when closed. Throws std::runtime_error
// when it cannot be made, written or read back.
class ScratchFile {
 public:
  ScratchFile();
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  void Append(const std::string& text);
  // Everything appended, in pieces, in order.
  void ReadBack(const std::function<void(const std::string&)>& take);

 private:
  std::FILE* file_;
};

// Everything on standard input, as bytes.
std::string ReadStandardInput();

// A file to read as bytes, a part at a time ("-": standard input); null with the reason in
// error when it cannot be opened.
std::FILE* OpenInput(const std::string& path, std::string& error);

// path as the profile reader of this build needs it. The Windows profile API looks up a
// bare file name in the Windows folder, so on Windows the path is made absolute.
std::wstring ProfilePath(const std::string& path);

}  // namespace tool
}  // namespace hublet
