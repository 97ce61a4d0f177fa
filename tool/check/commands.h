#pragma once
// The commands about one preference file: check it, read one key as the plug-in does, and
// list every key. Each takes its own arguments (after the command's name), writes its output
// and returns the exit status.
#include <string>
#include <vector>

namespace hublet {
namespace tool {

int RunCheckCommand(const std::vector<std::string>& arguments);
int RunReadCommand(const std::vector<std::string>& arguments);
int RunKeysCommand(const std::vector<std::string>& arguments);

}  // namespace tool
}  // namespace hublet
