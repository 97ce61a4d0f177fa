#pragma once
// hublet replay: takes its own arguments (after the command's name), writes the transcript
// and returns the exit status.
#include <string>
#include <vector>

namespace hublet {
namespace tool {

int RunReplayCommand(const std::vector<std::string>& arguments);

}  // namespace tool
}  // namespace hublet
