#include "tests/platform/temp_file.h"

#include <cstdio>
#include <fstream>

#ifdef _WIN32
#include <direct.h>
#include <process.h>
#include <stdlib.h>
#else
#include <sys/stat.h>
#include <unistd.h>

#include "platform/wide_text.h"
#endif

namespace hublet {
namespace testutil {
namespace {

int ProcessId() {
#ifdef _WIN32
  return _getpid();
#else
  return static_cast<int>(getpid());
#endif
}

}  // namespace

// Natively ctest runs every case as its own process, in parallel: the process id keeps
// their names apart.
TempFile::TempFile() {
  static int counter = 0;
  name_ = "hublet-test-" + std::to_string(ProcessId()) + "-" + std::to_string(++counter) +
          ".ini";
#ifdef _WIN32
  const std::wstring wide(name_.begin(), name_.end());
  wchar_t full[1024] = {};
  path_ = _wfullpath(full, wide.c_str(), 1024) != nullptr ? full : wide;
#else
  char cwd[4096] = {};
  path_ = Utf8ToWide(std::string(getcwd(cwd, sizeof cwd) != nullptr ? cwd : ".") + "/" +
                     name_);
#endif
}

TempFile::~TempFile() {
  if (std::remove(name_.c_str()) != 0) {
#ifdef _WIN32
    _rmdir(name_.c_str());
#else
    rmdir(name_.c_str());
#endif
  }
}

void TempFile::Write(const std::string& bytes) {
  std::ofstream out(name_, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void TempFile::MakeDirectory() {
#ifdef _WIN32
  _mkdir(name_.c_str());
#else
  mkdir(name_.c_str(), 0700);
#endif
}

}  // namespace testutil
}  // namespace hublet
