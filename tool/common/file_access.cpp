#include "tool/common/file_access.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <stdlib.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

#include "platform/wide_text.h"

namespace hublet {
namespace tool {
namespace {

#ifdef _WIN32
using StatBuffer = struct _stat64;
int Stat(const std::string& path, StatBuffer* info) { return _wstat64(Utf8ToWide(path).c_str(), info); }
std::FILE* OpenForReading(const std::string& path) { return _wfopen(Utf8ToWide(path).c_str(), L"rb"); }
#else
using StatBuffer = struct stat;
int Stat(const std::string& path, StatBuffer* info) { return ::stat(path.c_str(), info); }
std::FILE* OpenForReading(const std::string& path) { return std::fopen(path.c_str(), "rb"); }
#endif

// Opens path for reading when it is a regular file; null with a reason in error if not.
std::FILE* OpenRegularFile(const std::string& path, StatBuffer& info, std::string& error) {
  if (Stat(path, &info) != 0) {
    error = std::strerror(errno);
    return nullptr;
  }
  if ((info.st_mode & S_IFMT) != S_IFREG) {
    error = "not a regular file";
    return nullptr;
  }
  std::FILE* file = OpenForReading(path);
  if (file == nullptr) error = std::strerror(errno);
  return file;
}

// Opens a new temporary file for writing and reading, removed when closed; null with
// errno set when none can be made.
std::FILE* OpenScratch() {
#ifdef _WIN32
  // Not tmpfile(): the C library makes it in the drive's root, where users may not write.
  wchar_t folder[MAX_PATH + 1];
  wchar_t name[MAX_PATH + 1];
  if (::GetTempPathW(MAX_PATH + 1, folder) == 0 || ::GetTempFileNameW(folder, L"hub", 0, name) == 0) {
    errno = EACCES;
    return nullptr;
  }
  return _wfopen(name, L"w+bD");
#else
  const char* folder = std::getenv("TMPDIR");
  std::string name = std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp") + "/hublet-XXXXXX";
  const int fd = ::mkstemp(&name[0]);
  if (fd < 0) return nullptr;
  ::unlink(name.c_str());
  std::FILE* file = ::fdopen(fd, "w+b");
  if (file == nullptr) ::close(fd);
  return file;
#endif
}

std::runtime_error ScratchError(const char* what) {
  return std::runtime_error(std::string("cannot ") + what + " a temporary file: " + std::strerror(errno));
}

}  // namespace

bool CanReadFile(const std::string& path, std::string& error) {
  StatBuffer info;
  std::FILE* file = OpenRegularFile(path, info, error);
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

ScratchFile::ScratchFile() : file_(OpenScratch()) {
  if (file_ == nullptr) throw ScratchError("make");
}

ScratchFile::~ScratchFile() { std::fclose(file_); }

void ScratchFile::Append(const std::string& text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) throw ScratchError("write");
}

void ScratchFile::ReadBack(const std::function<void(const std::string&)>& take) {
  errno = 0;
  if (std::fflush(file_) != 0 || std::fseek(file_, 0, SEEK_SET) != 0) throw ScratchError("write");
  char chunk[65536];
  std::size_t got = 0;
  while ((got = std::fread(chunk, 1, sizeof chunk, file_)) > 0) take(std::string(chunk, got));
  if (std::ferror(file_)) throw ScratchError("read back");
}

bool ReadFileBytes(const std::string& path, std::string& bytes, std::string& error,
                   const std::function<bool(const std::string& bytes)>& readEnough) {
  StatBuffer info;
  std::FILE* file = OpenRegularFile(path, info, error);
  if (file == nullptr) return false;
  // Room for the whole file at once: growing by doubling would take up to twice its size.
  // Not when reading may stop early: room is then made as the bytes come.
  bytes.clear();
  if (!readEnough) bytes.reserve(static_cast<std::size_t>(info.st_size));
  char chunk[65536];
  std::size_t got = 0;
  while ((got = std::fread(chunk, 1, sizeof chunk, file)) > 0) {
    bytes.append(chunk, got);
    if (readEnough && readEnough(bytes)) break;
  }
  const bool failed = std::ferror(file) != 0;
  std::fclose(file);
  if (failed) error = "read error";
  return !failed;
}

std::wstring ProfilePath(const std::string& path) {
  const std::wstring wide = Utf8ToWide(path);
#ifdef _WIN32
  wchar_t* full = _wfullpath(nullptr, wide.c_str(), 0);
  if (full == nullptr) return wide;
  const std::wstring absolute = full;
  std::free(full);
  return absolute;
#else
  return wide;
#endif
}

std::FILE* OpenInput(const std::string& path, std::string& error) {
  if (path == "-") {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    return stdin;
  }
  std::FILE* file = OpenForReading(path);
  if (file == nullptr) error = std::strerror(errno);
  return file;
}

std::string ReadStandardInput() {
#ifdef _WIN32
  _setmode(_fileno(stdin), _O_BINARY);
#endif
  std::string bytes;
  char buffer[65536];
  std::size_t count;
  while ((count = std::fread(buffer, 1, sizeof buffer, stdin)) > 0) bytes.append(buffer, count);
  return bytes;
}

}  // namespace tool
}  // namespace hublet
