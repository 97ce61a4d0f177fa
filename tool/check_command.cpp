#include <memory>

#include "platform/profile.h"
#include "settings/settings.h"
#include "platform/wide_text.h"
#include "tool/check.h"
#include "tool/command_line.h"
#include "tool/commands.h"
#include "tool/file_access.h"
#include "tool/report.h"

namespace hublet {
namespace tool {
namespace {

const char kHelp[] =
    "Usage: hublet check [FILE] [--format text|json]\n"
    "\n"
    "Reads a preference file with the plug-in's own reader and settings code and tells what\n"
    "it will do: the value of every key the plug-in reads and where it comes from (a line of\n"
    "the file, or the default), then every place where the plug-in will do something other\n"
    "than what the file seems to say.\n"
    "\n"
    "  FILE             the preference file (default: Vantor.ini in the current folder)\n"
    "  --format text    a report for people (default)\n"
    "  --format json    the same report as a \"hublet-check/1\" JSON document\n"
    "\n"
    "Exit status: 0 no problems found, 1 problems found, 2 bad usage or unreadable file.\n";

}  // namespace

int RunCheckCommand(const std::vector<std::string>& arguments) {
  ArgumentScanner scanner(arguments);
  std::string format = "text";
  std::vector<std::string> files;
  while (!scanner.Done()) {
    if (scanner.HelpRequested()) {
      WriteOut(kHelp);
      return kExitOk;
    }
    if (scanner.Option("--format", format)) continue;
    files.push_back(scanner.Positional());
  }
  if (format != "text" && format != "json") throw UsageError("--format must be text or json, not \"" + format + "\"");
  if (files.size() > 1) throw UsageError("check takes one file");
  const std::string file = files.empty() ? WideToUtf8(kPreferenceFileName) : files[0];

  std::string bytes;
  std::string error;
  if (!ReadFileBytes(file, bytes, error)) {
    WriteError("hublet check: cannot read " + file + ": " + error +
               (files.empty() ? " (give the preference file: hublet check FILE)\n" : "\n"));
    return kExitUsage;
  }
  const std::unique_ptr<ProfileReader> reader = OpenProfile(ProfilePath(file));
  const CheckReport report = CheckPreferenceFile(bytes, *reader);
  WriteOut(format == "json" ? FormatCheckJson(report, file) : FormatCheckText(report, file));
  return report.diagnostics.empty() ? kExitOk : kExitProblems;
}

}  // namespace tool
}  // namespace hublet
