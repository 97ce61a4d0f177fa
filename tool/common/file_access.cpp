#include "tool/common/file_access.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <stdlib.h>
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

}  // namespace

bool ReadFileBytes(const std::string& path, std::string& bytes, std::string& error) {
  StatBuffer info;
  if (Stat(path, &info) != 0) {
    error = std::strerror(errno);
    return false;
  }
  if ((info.st_mode & S_IFMT) != S_IFREG) {
    error = "not a regular file";
    return false;
  }
  std::FILE* file = OpenForReading(path);
  if (file == nullptr) {
    error = std::strerror(errno);
    return false;
  }
  // Room for the whole file at once: growing by doubling would take up to twice its size.
  bytes.clear();
  bytes.reserve(static_cast<std::size_t>(info.st_size));
  char chunk[65536];
  std::size_t got = 0;
  while ((got = std::fread(chunk, 1, sizeof chunk, file)) > 0) bytes.append(chunk, got);
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
