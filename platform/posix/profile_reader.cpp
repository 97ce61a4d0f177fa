#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>
#include <utility>

#include "platform/ini_document.h"
#include "platform/profile.h"
#include "platform/wide_text.h"

namespace hublet {
namespace {

// Only a regular file has content; a directory, a device or a pipe reads as empty. The
// open does not block, so that a FIFO left at the path cannot hang the caller. False when
// the file could not be read to its end.
bool ReadRegularFile(const std::string& path, std::string& bytes) {
  bool read = false;
  const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return read;
  struct stat info;
  if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) {
    // A byte more than the file holds, so that one read that leaves it unfilled has
    // reached the end: a small file costs one read call.
    const std::size_t expected = static_cast<std::size_t>(info.st_size);
    std::size_t size = 0;
    bytes.resize(expected + 1);
    for (;;) {
      if (size == bytes.size()) bytes.resize(2 * size);  // the file grew
      const ssize_t got = ::read(fd, &bytes[size], bytes.size() - size);
      if (got < 0 && errno == EINTR) continue;
      read = got == 0;
      if (got <= 0) break;
      size += static_cast<std::size_t>(got);
      if (size < bytes.size() && size >= expected) {
        read = true;
        break;
      }
    }
    bytes.resize(size);
  }
  ::close(fd);
  return read;
}

}  // namespace

std::shared_ptr<const IniDocument> ReadProfileDocument(const std::wstring& path, bool& read) {
  // The path's separators are taken as given: callers build POSIX paths here.
  std::string bytes;
  read = ReadRegularFile(WideToUtf8(path), bytes);
  return std::make_shared<const IniDocument>(IniDocument::Parse(std::move(bytes)));
}

std::unique_ptr<ProfileReader> OpenProfile(const std::wstring& path) {
  // The file is read once, here; every lookup answers from that copy.
  bool read = false;
  return std::unique_ptr<ProfileReader>(new IniDocumentReader(ReadProfileDocument(path, read)));
}

}  // namespace hublet
