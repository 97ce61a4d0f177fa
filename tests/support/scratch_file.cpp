#include "tests/support/scratch_file.h"

#include <cstdio>
#include <fstream>

#ifdef _WIN32
#include <direct.h>
#include <process.h>
#include <stdlib.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

#include "platform/wide_text.h"

namespace hublet {
namespace testing {
namespace {

int ProcessId() {
#ifdef _WIN32
  return _getpid();
#else
  return static_cast<int>(getpid());
#endif
}

std::wstring AbsolutePath(const std::string& name) {
#ifdef _WIN32
  const std::wstring wide = Utf8ToWide(name);
  wchar_t full[1024] = {};
  return _wfullpath(full, wide.c_str(), 1024) != nullptr ? full : wide;
#else
  char cwd[4096] = {};
  return Utf8ToWide(std::string(getcwd(cwd, sizeof cwd) != nullptr ? cwd : ".") + "/" + name);
#endif
}

}  // namespace

// ctest may run test cases as processes side by side: the process id keeps names apart.
ScratchFile::ScratchFile() {
  static int counter = 0;
  name_ = "hublet-test-" + std::to_string(ProcessId()) + "-" + std::to_string(++counter) + ".ini";
  path_ = AbsolutePath(name_);
}

ScratchFile::~ScratchFile() {
  if (std::remove(name_.c_str()) == 0) return;
#ifdef _WIN32
  _rmdir(name_.c_str());
#else
  rmdir(name_.c_str());
#endif
}

void ScratchFile::Rewrite(const std::string& bytes) const {
  std::ofstream out(name_, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void ScratchFile::MakeDirectory() const {
#ifdef _WIN32
  _mkdir(name_.c_str());
#else
  mkdir(name_.c_str(), 0700);
#endif
}

}  // namespace testing
}  // namespace hublet
