#include <algorithm>

#include "tool/common/command_line.h"
#include "tool/stamps/stamps.h"
#include "tool/stamps/stamps_command.h"
#include "tool/stamps/stamps_report.h"

namespace hublet {
namespace tool {
namespace {

const char kHelp[] =
    "Usage: hublet stamps PATH... [--format text|json|csv] [--summary] [--all-files]\n"
    "\n"
    "Reads the save stamps the plug-in writes into scene files (the summary information:\n"
    "subject = who saved last, author = who saved before, title = the date) straight from\n"
    "the files, without 3ds Max, and tells for each file whether it carries a stamp as the\n"
    "plug-in writes it.\n"
    "\n"
    "  PATH...        scene files, and folders to search (with every folder under them)\n"
    "  --all-files    in folders, read every file, not only *.max\n"
    "  --format text  a table for people (default)\n"
    "  --format json  a \"hublet-stamps/1\" JSON document\n"
    "  --format csv   comma-separated values with a header line\n"
    "  --summary      also (with csv: instead) per saver, the files they saved last and\n"
    "                 their latest save\n"
    "\n"
    "Statuses: stamped, never-stamped (no title and no subject), irregular (stamped by hand\n"
    "or only partly), not-compound-file, no-summary-information, unreadable (with why).\n"
    "Exit status: 0 every file stamped, 1 some not, 2 bad usage or a path that does not\n"
    "exist.\n";

}  // namespace

int RunStampsCommand(const std::vector<std::string>& arguments) {
  ArgumentScanner scanner(arguments);
  std::string format = "text";
  bool summary = false, allFiles = false;
  std::vector<std::string> paths;
  while (!scanner.Done()) {
    if (scanner.HelpRequested()) {
      WriteOut(kHelp);
      return kExitOk;
    }
    if (scanner.Option("--format", format)) continue;
    if (scanner.Flag("--summary")) {
      summary = true;
      continue;
    }
    if (scanner.Flag("--all-files")) {
      allFiles = true;
      continue;
    }
    paths.push_back(scanner.Positional());
  }
  if (format != "text" && format != "json" && format != "csv")
    throw UsageError("--format must be text, json or csv, not \"" + format + "\"");
  if (paths.empty()) throw UsageError("name the scene files or folders to read");

  const std::vector<SceneStamp> stamps = ReadStamps(paths, allFiles);
  if (format == "json") WriteOut(StampsJson(stamps, summary));
  else if (format == "csv") WriteOut(StampsCsv(stamps, summary));
  else WriteOut(StampsText(stamps, summary));
  const bool allStamped = std::all_of(stamps.begin(), stamps.end(),
                                      [](const SceneStamp& stamp) { return stamp.status == StampStatus::kStamped; });
  return allStamped ? kExitOk : kExitProblems;
}

}  // namespace tool
}  // namespace hublet
