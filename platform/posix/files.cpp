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

}  // namespace

std::unique_ptr<ByteSource> OpenFileBytes(const std::wstring& path, std::string& error) {
  // Not blocking on open, so that a FIFO in a walked folder cannot hang the walk.
  const int fd = ::open(WideToUtf8(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
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

PathKind KindOfPath(const std::wstring& path) {
  struct stat info;
  if (::stat(WideToUtf8(path).c_str(), &info) != 0) return PathKind::kMissing;
  if (S_ISREG(info.st_mode)) return PathKind::kFile;
  if (S_ISDIR(info.st_mode)) return PathKind::kDirectory;
  return PathKind::kOther;
}

bool ListDirectory(const std::wstring& path, std::vector<DirectoryEntry>& entries, std::string& error) {
  const std::string folder = WideToUtf8(path);
  DIR* directory = ::opendir(folder.c_str());
  if (directory == nullptr) {
    error = std::strerror(errno);
    return false;
  }
  entries.clear();
  while (const dirent* entry = ::readdir(directory)) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    struct stat info;
    PathKind kind = PathKind::kMissing;
    if (::lstat((folder + "/" + name).c_str(), &info) == 0) {
      if (S_ISLNK(info.st_mode)) {
        kind = KindOfPath(Utf8ToWide(folder + "/" + name));
        if (kind == PathKind::kDirectory) kind = PathKind::kOther;
      } else {
        kind = S_ISREG(info.st_mode) ? PathKind::kFile : S_ISDIR(info.st_mode) ? PathKind::kDirectory : PathKind::kOther;
      }
    }
    entries.push_back(DirectoryEntry{Utf8ToWide(name), kind});
  }
  ::closedir(directory);
  std::sort(entries.begin(), entries.end(),
            [](const DirectoryEntry& a, const DirectoryEntry& b) { return a.name < b.name; });
  return true;
}

}  // namespace hublet
