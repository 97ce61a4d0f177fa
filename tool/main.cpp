// hublet: tells what a preference file will make the plug-in do, with the plug-in's own code.
#include <exception>
#include <string>
#include <vector>

#include "platform/wide_text.h"
#include "tool/check/commands.h"
#include "tool/common/command_line.h"
#include "tool/common/json_writer.h"
#include "tool/common/shown_text.h"
#include "tool/replay/replay_command.h"
#include "tool/stamps/stamps_command.h"

namespace {

const char kHelp[] =
    "Usage: hublet COMMAND [ARGUMENT...]\n"
    "\n"
    "The command-line companion of the Hublet plug-in for 3ds Max 2017. It reads the\n"
    "preference file Vantor.ini with the plug-in's own code and tells what it will do.\n"
    "\n"
    "Commands:\n"
    "  check [FILE...]  the value of every key, where it comes from, and the problems found\n"
    "  replay [EVENT...]  the host calls the plug-in makes in a simulated 3ds Max session\n"
    "  read FILE SECTION KEY (--int D | --text D)\n"
    "                   what the plug-in's reader returns for one key\n"
    "  keys             the reference of every preference key\n"
    "  stamps PATH...   who saved which scene files, and when, from the files' save stamps\n"
    "\n"
    "\"hublet help COMMAND\" or \"hublet COMMAND --help\" describes each command;\n"
    "\"hublet --version\" prints the version.\n"
    "Exit status: 0 fine, 1 problems found (check, stamps), 2 bad usage, unreadable input or\n"
    "output that cannot be written.\n";

using Command = int (*)(const std::vector<std::string>&);

Command FindCommand(const std::string& name) {
  using namespace hublet::tool;
  if (name == "check") return RunCheckCommand;
  if (name == "replay") return RunReplayCommand;
  if (name == "read") return RunReadCommand;
  if (name == "keys") return RunKeysCommand;
  if (name == "stamps") return RunStampsCommand;
  return nullptr;
}

// Whether the command was asked for JSON, so that an error is answered in JSON too.
bool WantsJson(const std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i)
    if (arguments[i] == "--format=json" || (arguments[i] == "--format" && i + 1 < arguments.size() &&
                                            arguments[i + 1] == "json"))
      return true;
  return false;
}

// Every failure, of any command, ends here: its message reaches the terminal with control
// characters escaped, whatever text from a file or the command line it quotes.
int Fail(const std::string& code, const std::string& message, const std::string& helpCommand, bool json) {
  using namespace hublet::tool;
  const std::string shown = Escaped(hublet::Utf8ToWide(message));
  if (json) WriteOut("{\"schema\": \"hublet-error/1\", \"error\": " + JsonError(code, shown) + "}\n");
  WriteError("hublet: " + shown + (helpCommand.empty() ? "" : " (see " + helpCommand + ")") + "\n");
  return kExitUsage;
}

int Run(std::vector<std::string> arguments) {
  using namespace hublet::tool;
  if (arguments.empty()) {
    WriteError(kHelp);
    return kExitUsage;
  }
  std::string name = arguments.front();
  arguments.erase(arguments.begin());
  if (name == "-h" || name == "--help" || (name == "help" && arguments.empty())) {
    WriteOut(kHelp);
    return kExitOk;
  }
  if (name == "--version") {
    WriteOut("hublet " HUBLET_VERSION "\n");
    return kExitOk;
  }
  if (name == "help") {
    name = arguments.front();
    arguments.assign(1, "--help");
  }
  const Command command = FindCommand(name);
  const bool json = WantsJson(arguments);
  if (command == nullptr) return Fail("usage", "unknown command " + QuotedArgument(name), "hublet --help", json);
  try {
    return command(arguments);
  } catch (const UsageError& error) {
    return Fail("usage", error.what(), "hublet " + name + " --help", json);
  } catch (const InputError& error) {
    return Fail("unreadable", error.what(), std::string(), json);
  } catch (const std::exception& error) {
    return Fail("failure", error.what(), std::string(), json);
  }
}

}  // namespace

int main(int argc, char** argv) {
  using namespace hublet::tool;
  PrepareStandardStreams();
  const int status = Run(Utf8Arguments(argc, argv));
  // A full disk or a closed pipe must not pass for success.
  std::string error;
  if (!FinishOutput(error)) {
    WriteError("hublet: cannot write the output: " + error + "\n");
    return kExitUsage;
  }
  return status;
}
