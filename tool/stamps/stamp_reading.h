#pragma once
// hublet stamps: the files of a walk read on several threads at once, since on network
// storage every read waits a round trip, with each step handed back in the walk's order.
#include <functional>
#include <memory>
#include <string>

#include "platform/byte_source.h"
#include "tool/stamps/scene_walk.h"
#include "tool/stamps/stamps.h"

namespace hublet {
namespace tool {

// Opens a file to read (OpenFileBytes; tests wrap it): null with the reason in error.
using OpenBytes = std::function<std::unique_ptr<ByteSource>(const std::wstring& path, std::string& error)>;

// The row of a file step, read through open, or of a folder that could not be listed.
SceneStamp ReadStamp(const WalkStep& file, const OpenBytes& open);
SceneStamp UnlistedFolderStamp(const WalkStep& folder);

// A step of the walk as it is handed back: for a file or a folder that could not be listed, its
// row, and the row's text as the report shows it.
struct ReadStep {
  WalkStep step;
  SceneStamp stamp;
  std::string text;
};

// Takes the walk's steps and reads the files among them on up to `jobs` threads (the calling
// one and helpers): one a core, and more while reads wait on the storage. Each step is given to
// prepare on the thread that read it, so that what a row costs beyond the reading is shared out
// too, and then handed to done in the walk's order, one call at a time, from any of those
// threads. At most two steps a job, or 32, are held, so memory does not grow with the number
// of files. Rethrows what prepare or done throws; else returns how many threads read (the calling
// one among them).
using PrepareStep = std::function<void(ReadStep& read)>;
using StepDone = std::function<void(ReadStep& read)>;
int ReadInWalkOrder(SceneWalk& walk, int jobs, const OpenBytes& open, const PrepareStep& prepare,
                    const StepDone& done);

}  // namespace tool
}  // namespace hublet
