#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/byte_source.h"
#include "platform/wide_text.h"

namespace hublet {
namespace {

class FileBytes : public ByteSource {
 public:
  FileBytes(int fd, std::uint64_t size) : fd_(fd), size_(size) {}
  ~FileBytes() override { ::close(fd_); }
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  std::uint64_t Size() const override { return size_; }

 private:
  std::size_t ReadSome(std::uint64_t offset, std::uint8_t* out, std::size_t count) override {
    for (;;) {
      const ssize_t got = ::pread(fd_, out, count, static_cast<off_t>(offset));
      if (got >= 0 || errno != EINTR) return got > 0 ? static_cast<std::size_t>(got) : 0;
    }
  }

  int fd_;
  std::uint64_t size_;
};

const unsigned kEscapedByte = 0xDC00;

bool IsEscapedByte(std::uint32_t unit) { return unit >= kEscapedByte + 0x80 && unit <= kEscapedByte + 0xFF; }

// A name's bytes as a wide path (see WidePath) and back.
std::wstring WideName(const std::string& bytes) {
  // ASCII, as most names are, needs no look for bytes that are not UTF-8.
  if (std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; }))
    return std::wstring(bytes.begin(), bytes.end());
  std::wstring wide;
  std::size_t at = 0;
  while (at < bytes.size()) {
    std::size_t text = at;
    while (text < bytes.size()) {
      const std::size_t length = Utf8SequenceAt(bytes, text, bytes.size());
      if (length == 0) break;
      text += length;
    }
    wide += Utf8ToWide(bytes.substr(at, text - at));
    if (text < bytes.size()) wide += static_cast<wchar_t>(kEscapedByte + static_cast<unsigned char>(bytes[text++]));
    at = text;
  }
  return wide;
}

// Escaped bytes are lone surrogates; a surrogate pair (a character past U+FFFF) may end in
// the same range and is text.
template <typename ByteOf>
std::string NameBytes(const std::wstring& wide, ByteOf byteOf) {
  std::string bytes;
  std::size_t text = 0;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    const std::uint32_t unit = static_cast<std::uint32_t>(wide[i]);
    const bool pairStart = unit >= 0xD800 && unit <= 0xDBFF && i + 1 < wide.size();
    if (pairStart && static_cast<std::uint32_t>(wide[i + 1]) >= 0xDC00 &&
        static_cast<std::uint32_t>(wide[i + 1]) <= 0xDFFF) {
      ++i;
    } else if (IsEscapedByte(unit)) {
      bytes += WideToUtf8(wide.substr(text, i - text)) + byteOf(static_cast<unsigned char>(unit - kEscapedByte));
      text = i + 1;
    }
  }
  // Most names hold no escaped byte: they are UTF-8 as they stand.
  if (text == 0) return WideToUtf8(wide);
  return bytes + WideToUtf8(wide.substr(text));
}

std::string NativePath(const std::wstring& path) {
  return NameBytes(path, [](unsigned char byte) { return std::string(1, static_cast<char>(byte)); });
}

PathKind KindOfNativePath(const std::string& path, std::string& whyMissing) {
  struct stat info;
  if (::stat(path.c_str(), &info) != 0) {
    whyMissing = std::strerror(errno);
    return PathKind::kMissing;
  }
  if (S_ISREG(info.st_mode)) return PathKind::kFile;
  if (S_ISDIR(info.st_mode)) return PathKind::kDirectory;
  return PathKind::kOther;
}

// An entry's kind from the listing where the file system gives it, so that a folder of
// thousands of files costs no question per file; a link is followed to tell a folder.
PathKind KindOfEntry(const std::string& folder, const std::string& name, unsigned char type) {
  if (type == DT_REG) return PathKind::kFile;
  if (type == DT_DIR) return PathKind::kDirectory;
  const std::string path = folder + name;
  if (type == DT_UNKNOWN) {
    struct stat info;
    if (::lstat(path.c_str(), &info) != 0) return PathKind::kMissing;
    if (!S_ISLNK(info.st_mode))
      return S_ISREG(info.st_mode) ? PathKind::kFile : S_ISDIR(info.st_mode) ? PathKind::kDirectory : PathKind::kOther;
  } else if (type != DT_LNK) {
    return PathKind::kOther;
  }
  std::string whyMissing;
  const PathKind target = KindOfNativePath(path, whyMissing);
  return target == PathKind::kDirectory ? PathKind::kOther : target;
}

}  // namespace

std::wstring WidePath(const std::string& path) { return WideName(path); }

std::string ShownPath(const std::wstring& path) {
  return NameBytes(path, [](unsigned char byte) {
    const char* const hex = "0123456789ABCDEF";
    return std::string("\\x") + hex[byte >> 4] + hex[byte & 0xF];
  });
}

std::unique_ptr<ByteSource> OpenFileBytes(const std::wstring& path, std::string& error) {
  // Not blocking on open, so that a FIFO in a walked folder cannot hang the walk.
  const int fd = ::open(NativePath(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) {
    error = std::strerror(errno);
    return nullptr;
  }
  struct stat info;
  if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
    error = "not a regular file";
    ::close(fd);
    return nullptr;
  }
  return std::unique_ptr<ByteSource>(new FileBytes(fd, static_cast<std::uint64_t>(info.st_size)));
}

PathKind KindOfPath(const std::wstring& path, std::string& whyMissing) {
  return KindOfNativePath(NativePath(path), whyMissing);
}

bool ListDirectory(const std::wstring& path, std::vector<DirectoryEntry>& entries, std::string& error) {
  std::string folder = NativePath(path);
  DIR* directory = ::opendir(folder.c_str());
  if (directory == nullptr) {
    error = std::strerror(errno);
    return false;
  }
  if (folder.empty() || folder.back() != '/') folder += '/';
  entries.clear();
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(directory);
    if (entry == nullptr) break;
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    entries.push_back(DirectoryEntry{WideName(name), KindOfEntry(folder, name, entry->d_type)});
  }
  const int readError = errno;
  ::closedir(directory);
  if (readError != 0) {
    error = std::strerror(readError);
    return false;
  }
  std::sort(entries.begin(), entries.end(),
            [](const DirectoryEntry& a, const DirectoryEntry& b) { return a.name < b.name; });
  return true;
}

}  // namespace hublet
