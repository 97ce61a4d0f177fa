#pragma once
// hublet stamps: the files to read and the folders that could not be, in the order of
// the report: each path named, and under a folder named every folder (depth first, by
// name). Only the folders on the way down are held, so memory follows the tree's depth,
// not the number of files.
#include <string>
#include <vector>

#include "platform/byte_source.h"
#include "tool/stamps/path_list.h"

namespace hublet {
namespace tool {

struct WalkStep {
  enum class Kind {
    kFile,             // a file to read
    kUnlistedFolder,   // a folder that cannot be listed: reason says why
    kUnreadablePath,   // a path named that is neither a file nor a folder one can reach
    kUnreadableList,   // the list of paths cannot be read any further
    kNoSceneFiles,     // a folder named, under which no file to read was found
  };
  Kind kind = Kind::kFile;
  std::wstring path;
  std::string shown;   // the path as the report shows it
  std::string reason;  // why, for the kinds that fail
};

class SceneWalk {
 public:
  // allFiles: every file in the folders, not only "*.max" (any case).
  SceneWalk(PathList& paths, bool allFiles) : paths_(paths), allFiles_(allFiles) {}

  // The next step; false at the end of the walk.
  bool Next(WalkStep& step);

 private:
  struct Folder {
    std::wstring path;
    std::vector<DirectoryEntry> entries;
    std::size_t next;
  };
  bool NextNamed(WalkStep& step);
  // Lists a folder to walk it next; false (with step an unlisted folder) when it cannot be.
  bool Enter(const std::wstring& folder, WalkStep& step);

  PathList& paths_;
  const bool allFiles_;
  std::vector<Folder> folders_;  // the folders on the way down, the one being walked last
  bool walkingNamedFolder_ = false;
  bool foundInNamedFolder_ = false;
  std::string namedFolder_;  // shown
  bool listEnded_ = false;
};

}  // namespace tool
}  // namespace hublet
