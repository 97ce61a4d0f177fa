#include <cstdio>
#include <memory>
#include <utility>

#include "platform/profile.h"
#include "platform/wide_text.h"
#include "settings/settings.h"
#include "tool/check/check.h"
#include "tool/check/commands.h"
#include "tool/check/report.h"
#include "tool/common/command_line.h"
#include "tool/common/file_access.h"
#include "tool/common/json_writer.h"
#include "tool/common/shown_text.h"

namespace hublet {
namespace tool {
namespace {

const char kHelp[] =
    "Usage: hublet check [FILE...] [--format text|json|diagnostics] [--strict]\n"
    "\n"
    "Reads preference files with the plug-in's own reader and settings code and tells what\n"
    "they will do: the value of every key the plug-in reads and where it comes from (a line\n"
    "of the file, or the default), then every place where the plug-in will do something\n"
    "other than what the file seems to say.\n"
    "\n"
    "  FILE...               the preference files (default: Vantor.ini in the current\n"
    "                        folder); - reads standard input\n"
    "  --format text         a report for people (default)\n"
    "  --format json         the same as a \"hublet-check/1\" JSON document (an array of\n"
    "                        them for several files)\n"
    "  --format diagnostics  only the diagnostics, as FILE:LINE: severity: message [code]\n"
    "  --strict              warnings fail the check too\n"
    "\n"
    "Severities: error (not read, or a switch set against what the text says), warning (read,\n"
    "but the plug-in does something else), note (read, without effect).\n"
    "Exit status: 0 no errors (with --strict: no errors or warnings), 1 otherwise,\n"
    "2 bad usage or a file that cannot be read.\n";

// One file's result: its report, or why it could not be read.
struct FileResult {
  std::string name;
  bool readable;
  std::string error;
  CheckReport report;
};

FileResult CheckOne(const std::string& file) {
  FileResult result{file, true, std::string(), CheckReport()};
  std::string bytes;
  if (file == "-") {
    // No file for the Windows API to open: the parse the reader reproduces gives the values.
    bytes = ReadStandardInput();
    result.name = "<stdin>";
    result.report = CheckPreferenceFile(std::move(bytes));
    return result;
  }
  if (!ReadFileBytes(file, bytes, result.error)) {
    result.readable = false;
    return result;
  }
#ifdef _WIN32
  // The values as the Windows profile API reads them from the file itself.
  const std::unique_ptr<ProfileReader> reader = OpenProfile(ProfilePath(file));
  result.report = CheckPreferenceFile(std::move(bytes), *reader);
#else
  // Elsewhere the reader is this very parse of the bytes.
  result.report = CheckPreferenceFile(std::move(bytes));
#endif
  return result;
}

std::string UnreadableJson(const FileResult& result) {
  return "{\n  \"schema\": \"hublet-check/1\",\n  \"file\": " + JsonString(result.name) + ",\n  \"error\": " +
         JsonError("unreadable", "cannot read " + result.name + ": " + result.error) + "\n}\n";
}

}  // namespace

int RunCheckCommand(const std::vector<std::string>& arguments) {
  ArgumentScanner scanner(arguments);
  std::string format = "text";
  bool strict = false;
  std::vector<std::string> files;
  while (!scanner.Done()) {
    if (scanner.HelpRequested()) {
      WriteOut(kHelp);
      return kExitOk;
    }
    if (scanner.Option("--format", format)) continue;
    if (scanner.Flag("--strict")) {
      strict = true;
      continue;
    }
    files.push_back(scanner.Positional());
  }
  if (format != "text" && format != "json" && format != "diagnostics")
    throw UsageError("--format must be text, json or diagnostics, not " + QuotedArgument(format));
  const bool defaultFile = files.empty();
  if (defaultFile) files.push_back(WideToUtf8(kPreferenceFileName));

  int status = kExitOk;
  const bool jsonArray = format == "json" && files.size() > 1;
  if (jsonArray) WriteOut("[\n");
  for (std::size_t i = 0; i < files.size(); ++i) {
    const FileResult result = CheckOne(files[i]);
    // The name as people see it: a control character in it never reaches the terminal raw.
    const std::string shown = Escaped(Utf8ToWide(result.name));
    if (!result.readable) {
      WriteError("hublet: cannot read " + shown + ": " + result.error +
                 (defaultFile ? " (give the preference file: hublet check FILE)\n" : "\n"));
      if (format == "json") WriteOut(UnreadableJson(result));
      status = kExitUsage;
    } else {
      const CheckReport& report = result.report;
      if (format == "json") WriteOut(FormatCheckJson(report, result.name));
      else if (format == "diagnostics") WriteOut(FormatDiagnostics(report, shown));
      else WriteOut((i > 0 ? "\n" : "") + FormatCheckText(report, shown));
      const bool fails = report.Count(Severity::Error) > 0 || (strict && report.Count(Severity::Warning) > 0);
      if (fails && status == kExitOk) status = kExitProblems;
    }
    if (jsonArray) WriteOut(i + 1 < files.size() ? ",\n" : "]\n");
  }
  return status;
}

}  // namespace tool
}  // namespace hublet
