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

// Takes the walk's steps and reads the files among them on `jobs` threads (the calling
// one and jobs - 1 more), and hands every step, with the file's row, to done in the walk's
// order, one call at a time, from any of those threads. A few steps a job are held at
// most, so memory does not grow with the number of files. Rethrows what done throws.
using StepDone = std::function<void(const WalkStep& step, const SceneStamp& fileStamp)>;
void ReadInWalkOrder(SceneWalk& walk, int jobs, const OpenBytes& open, const StepDone& done);

}  // namespace tool
}  // namespace hublet
