#pragma once
// The subcommands of the hublet program. Each takes its own arguments (after the
// subcommand's name), writes its output and returns the exit status.
#include <string>
#include <vector>

namespace hublet {
namespace tool {

int RunCheckCommand(const std::vector<std::string>& arguments);
int RunReplayCommand(const std::vector<std::string>& arguments);
int RunReadCommand(const std::vector<std::string>& arguments);
int RunKeysCommand(const std::vector<std::string>& arguments);
int RunStampsCommand(const std::vector<std::string>& arguments);

}  // namespace tool
}  // namespace hublet
