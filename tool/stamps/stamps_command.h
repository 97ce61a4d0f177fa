#pragma once
// hublet stamps: takes its own arguments (after the command's name), writes the report and
// returns the exit status.
#include <string>
#include <vector>

namespace hublet {
namespace tool {

int RunStampsCommand(const std::vector<std::string>& arguments);

}  // namespace tool
}  // namespace hublet
