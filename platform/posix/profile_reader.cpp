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
// open does not block, so that a FIFO left at the path cannot hang the caller.
std::string ReadRegularFile(const std::string& path) {
  std::string bytes;
  const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return bytes;
  struct stat info;
  if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) {
    char chunk[65536];
    for (;;) {
      const ssize_t got = ::read(fd, chunk, sizeof chunk);
      if (got > 0) {
        bytes.append(chunk, static_cast<std::size_t>(got));
      } else if (got == 0 || errno != EINTR) {
        break;
      }
    }
  }
  ::close(fd);
  return bytes;
}

}  // namespace

std::unique_ptr<ProfileReader> OpenProfile(const std::wstring& path) {
  // The path's separators are taken as given: callers build POSIX paths here.
  std::string bytes = ReadRegularFile(WideToUtf8(path));
  // The file is read once, here; every lookup answers from that copy.
  return std::unique_ptr<ProfileReader>(new IniDocumentReader(IniDocument::Parse(std::move(bytes))));
}

}  // namespace hublet
