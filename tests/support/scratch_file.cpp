#include "tests/support/scratch_file.h"

#include <atomic>
#include <stdexcept>

#ifdef _WIN32
#include <process.h>
#include <stdlib.h>
#define HUBLET_GETPID _getpid
#else
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>
#define HUBLET_GETPID getpid
#endif

#include "platform/wide_text.h"

namespace hublet {
namespace testing {
namespace {

std::atomic<int> counter{0};

std::wstring AbsolutePath(const std::string& name) {
#ifdef _WIN32
  wchar_t buffer[1024];
  const std::wstring wide = Utf8ToWide(name);
  if (_wfullpath(buffer, wide.c_str(), 1024) == nullptr) throw std::runtime_error("no full path");
  return buffer;
#else
  char buffer[PATH_MAX];
  if (getcwd(buffer, sizeof buffer) == nullptr) throw std::runtime_error("no working folder");
  return Utf8ToWide(std::string(buffer) + "/" + name);
#endif
}

}  // namespace

ScratchFile::ScratchFile(const std::string& bytes)
    : name_("scratch-" + std::to_string(HUBLET_GETPID()) + "-" + std::to_string(counter++) + ".ini"),
      path_(AbsolutePath(name_)) {
  Rewrite(bytes);
}

ScratchFile::~ScratchFile() { std::remove(name_.c_str()); }

void ScratchFile::Rewrite(const std::string& bytes) const {
  std::FILE* file = std::fopen(name_.c_str(), "wb");
  if (file == nullptr) throw std::runtime_error("cannot write " + name_);
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

}  // namespace testing
}  // namespace hublet
