#include "tool/check/commands.h"
#include "tool/check/keys_reference.h"
#include "tool/common/command_line.h"
#include "tool/common/shown_text.h"

namespace hublet {
namespace tool {
namespace {

const char kHelp[] =
    "Usage: hublet keys [--format markdown|text]\n"
    "\n"
    "Prints the reference of the preference file, generated from the plug-in's own table of\n"
    "keys: section, key, settings field, default, when it is read, how a switch is tested,\n"
    "and what it does, followed by the rules that apply to all keys.\n"
    "\n"
    "  --format markdown   a Markdown table (default)\n"
    "  --format text       plain text\n";

}  // namespace

int RunKeysCommand(const std::vector<std::string>& arguments) {
  ArgumentScanner scanner(arguments);
  std::string format = "markdown";
  while (!scanner.Done()) {
    if (scanner.HelpRequested()) {
      WriteOut(kHelp);
      return kExitOk;
    }
    if (scanner.Option("--format", format)) continue;
    throw UsageError("keys takes no argument \"" + scanner.Positional() + "\"");
  }
  if (format == "markdown")
    WriteOut(KeysMarkdown());
  else if (format == "text")
    WriteOut(KeysText());
  else
    throw UsageError("--format must be markdown or text, not " + QuotedArgument(format));
  return kExitOk;
}

}  // namespace tool
}  // namespace hublet
