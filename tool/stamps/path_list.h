#pragma once
// hublet stamps: the paths to read, those named on the command line and then those of a
// list (--files-from), one a line, taken as the walk reaches them, so that a list of a
// whole archive is never held at once.
#include <cstdio>
#include <string>
#include <vector>

namespace hublet {
namespace tool {

class PathList {
 public:
  // list may be null; the caller opens and closes it.
  PathList(std::vector<std::string> named, std::FILE* list, std::string listName)
      : named_(std::move(named)), list_(list), listName_(std::move(listName)) {}

  // The next path as bytes; false at the end of the paths, or when the list cannot be
  // read any further (then error() says why).
  bool Next(std::string& path);
  const std::string& error() const { return error_; }

 private:
  bool NextLine(std::string& line);

  std::vector<std::string> named_;
  std::size_t nextNamed_ = 0;
  std::FILE* list_;
  std::string listName_;
  std::string error_;
};

}  // namespace tool
}  // namespace hublet
