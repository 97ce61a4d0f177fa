#pragma once
// Scratch files for the benchmarks, in a folder of their own that is removed at exit.
#include <string>

namespace hublet {

// The folder, made on first use.
const std::string& TempDirectory();
// Removes path at exit, before the folder; folders are removed after the files in them
// when registered before those files.
void RemoveAtExit(const std::string& path);

}  // namespace hublet
