// hublet: tells what a preference file will make the plug-in do, with the plug-in's own code.
#include <exception>
#include <string>
#include <vector>

#include "tool/command_line.h"
#include "tool/commands.h"

namespace {

const char kHelp[] =
    "Usage: hublet COMMAND [ARGUMENT...]\n"
    "\n"
    "The command-line companion of the Hublet plug-in for 3ds Max 2017. It reads the\n"
    "preference file Vantor.ini with the plug-in's own code and tells what it will do.\n"
    "\n"
    "Commands:\n"
    "  check [FILE]     the value of every key, where it comes from, and the problems found\n"
    "  replay [EVENT...]  the host calls the plug-in makes in a simulated 3ds Max session\n"
    "  read FILE SECTION KEY (--int D | --text D)\n"
    "                   what the plug-in's reader returns for one key\n"
    "  keys             the reference of every preference key\n"
    "\n"
    "\"hublet COMMAND --help\" describes each command.\n"
    "Exit status: 0 fine, 1 problems found (check), 2 bad usage or unreadable input.\n";

}  // namespace

int main(int argc, char** argv) {
  using namespace hublet::tool;
  PrepareStandardStreams();
  std::vector<std::string> arguments = Utf8Arguments(argc, argv);
  if (arguments.empty()) {
    WriteError(kHelp);
    return kExitUsage;
  }
  const std::string command = arguments.front();
  arguments.erase(arguments.begin());
  try {
    if (command == "-h" || command == "--help" || command == "help") {
      WriteOut(kHelp);
      return kExitOk;
    }
    if (command == "check") return RunCheckCommand(arguments);
    if (command == "replay") return RunReplayCommand(arguments);
    if (command == "read") return RunReadCommand(arguments);
    if (command == "keys") return RunKeysCommand(arguments);
    throw UsageError("unknown command \"" + command + "\"");
  } catch (const UsageError& error) {
    const std::string help = command == "check" || command == "replay" || command == "read" || command == "keys"
                                 ? "hublet " + command + " --help"
                                 : "hublet --help";
    WriteError("hublet: " + std::string(error.what()) + " (see " + help + ")\n");
    return kExitUsage;
  } catch (const std::exception& error) {
    WriteError("hublet: " + std::string(error.what()) + "\n");
    return kExitUsage;
  }
}
