#include <windows.h>

#include <algorithm>

#include "platform/byte_source.h"
#include "platform/wide_text.h"

namespace hublet {
namespace {

std::string LastErrorText() {
  const DWORD code = GetLastError();
  wchar_t* text = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
      reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  std::wstring message = length != 0 ? std::wstring(text, length) : L"error " + std::to_wstring(code);
  LocalFree(text);
  while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r' || message.back() == L'.'))
    message.pop_back();
  return WideToUtf8(message);
}

class FileBytes : public ByteSource {
 public:
  FileBytes(HANDLE file, std::uint64_t size) : file_(file), size_(size) {}
  ~FileBytes() override { CloseHandle(file_); }
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  std::uint64_t Size() const override { return size_; }

 private:
  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override {
    OVERLAPPED at = {};
    at.Offset = static_cast<DWORD>(offset);
    at.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD got = 0;
    const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(count, 1u << 30));
    return ReadFile(file_, out, chunk, &got, &at) ? got : 0;
  }

  HANDLE file_;
  std::uint64_t size_;
};

}  // namespace

std::wstring WidePath(const std::string& path) { return Utf8ToWide(path); }

std::string ShownPath(const std::wstring& path) {
  std::string shown = WideToUtf8(path);
  std::replace(shown.begin(), shown.end(), '\\', '/');
  return shown;
}

std::unique_ptr<ByteSource> OpenFileBytes(const std::wstring& path, std::string& error) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    error = LastErrorText();
    return nullptr;
  }
  LARGE_INTEGER size;
  if (GetFileType(file) != FILE_TYPE_DISK || !GetFileSizeEx(file, &size)) {
    error = "not a regular file";
    CloseHandle(file);
    return nullptr;
  }
  return std::unique_ptr<ByteSource>(new FileBytes(file, static_cast<std::uint64_t>(size.QuadPart)));
}

PathKind KindOfPath(const std::wstring& path, std::string& whyMissing) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    whyMissing = LastErrorText();
    return PathKind::kMissing;
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return PathKind::kDirectory;
  if ((attributes & FILE_ATTRIBUTE_DEVICE) != 0) return PathKind::kOther;
  return PathKind::kFile;
}

bool ListDirectory(const std::wstring& path, std::vector<DirectoryEntry>& entries, std::string& error) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((path + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    error = LastErrorText();
    return false;
  }
  entries.clear();
  do {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const DWORD attributes = found.dwFileAttributes;
    PathKind kind = PathKind::kFile;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
      kind = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? PathKind::kOther : PathKind::kDirectory;
    else if ((attributes & FILE_ATTRIBUTE_DEVICE) != 0)
      kind = PathKind::kOther;
    entries.push_back(DirectoryEntry{name, kind});
  } while (FindNextFileW(search, &found));
  // A share that goes away in the middle of a listing ends it with another error than this.
  const bool listedToTheEnd = GetLastError() == ERROR_NO_MORE_FILES;
  if (!listedToTheEnd) error = LastErrorText();
  FindClose(search);
  if (!listedToTheEnd) return false;
  std::sort(entries.begin(), entries.end(),
            [](const DirectoryEntry& a, const DirectoryEntry& b) { return a.name < b.name; });
  return true;
}

}  // namespace hublet
