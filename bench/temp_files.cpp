#include "bench/temp_files.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace hublet {
namespace {

// Kept alive to the very end (never destroyed), so that the clean-up at exit can use them.
std::vector<std::string>& TempPaths() {
  static std::vector<std::string>* paths = new std::vector<std::string>;
  return *paths;
}

// Newest first, so that a folder goes after what was put into it.
void RemoveTempPaths() {
  for (auto path = TempPaths().rbegin(); path != TempPaths().rend(); ++path)
    if (std::remove(path->c_str()) != 0) ::rmdir(path->c_str());
}

}  // namespace

const std::string& TempDirectory() {
  static const std::string* directory = new std::string([] {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/hublet-bench-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    std::atexit(RemoveTempPaths);
    return std::string(name.data());
  }());
  static const bool removed = (RemoveAtExit(*directory), true);
  (void)removed;
  return *directory;
}

void RemoveAtExit(const std::string& path) { TempPaths().push_back(path); }

}  // namespace hublet
