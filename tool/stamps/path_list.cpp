#include "tool/stamps/path_list.h"

#include <cerrno>
#include <cstring>

namespace hublet {
namespace tool {
namespace {

// Longer than any path a system takes (Windows: 32,767 UTF-16 units), so a longer line is
// damage, and memory stays bounded on a list without line ends.
constexpr std::size_t kLongestLine = 1 << 17;

}  // namespace

bool PathList::Next(std::string& path) {
  if (nextNamed_ < named_.size()) {
    path = named_[nextNamed_++];
    return true;
  }
  while (list_ != nullptr && error_.empty() && NextLine(path)) {
    // Lists written on Windows end their lines with "\r\n"; blank lines name nothing.
    if (!path.empty() && path.back() == '\r') path.pop_back();
    if (!path.empty()) return true;
  }
  return false;
}

bool PathList::NextLine(std::string& line) {
  line.clear();
  errno = 0;
  int c;
  while ((c = std::getc(list_)) != EOF && c != '\n') {
    if (line.size() == kLongestLine) {
      error_ = "a line of " + listName_ + " is longer than " + std::to_string(kLongestLine) + " bytes";
      return false;
    }
    line += static_cast<char>(c);
  }
  if (std::ferror(list_)) {
    error_ = "cannot read " + listName_ + ": " + (errno != 0 ? std::strerror(errno) : "read error");
    return false;
  }
  return c == '\n' || !line.empty();
}

}  // namespace tool
}  // namespace hublet
