#include <cstdlib>

#include "host/sim/sim_host.h"
#include "platform/wide_text.h"
#include "settings/settings.h"
#include "tool/command_line.h"
#include "tool/commands.h"
#include "tool/file_access.h"
#include "tool/replay.h"

namespace hublet {
namespace tool {
namespace {

const char kHelp[] =
    "Usage: hublet replay [--ini FILE] [OPTION...] [EVENT...]\n"
    "\n"
    "Loads and starts the plug-in in a simulated 3ds Max with FILE as its preference file,\n"
    "runs the events in order, unloads it, and prints every call the plug-in made on the\n"
    "host, grouped under the event that caused it (\"== EVENT\" lines, calls indented).\n"
    "\n"
    "Options (what the simulated host answers):\n"
    "  --ini FILE               the preference file (default: Vantor.ini in the current\n"
    "                           folder when there is one, else none: every key at its default)\n"
    "  --user NAME              the account name (default anna)\n"
    "  --host NAME              the machine name (default RENDER07)\n"
    "  --date D-M-YYYY          today's date (default 3-7-2020)\n"
    "  --time TICKS             the host's current time (default 0)\n"
    "  --renderer R             vray, vray-rt, scanline (default), none, or a class ID\n"
    "                           pair A,B (e.g. 0x73BAB286,0x77F8FD0C)\n"
    "  --property NAME=TEXT     a summary property of the open scene: author, subject or\n"
    "                           title; NAME alone makes one that exists without a value\n"
    "  --viewport-type I=T      viewport I (0 to 3) shows view type T at the start\n"
    "                           (default: 0=2 top, 1=4 front, 2=0 left, 3=7 perspective)\n"
    "  --toolbar-script         the companion toolbar's script file exists\n"
    "\n"
    "Events:\n"
    "  startup, reset, new, open, merge, save, render, import, export\n"
    "                           a scene operation: its pre- and post-notification\n"
    "                           (startup is one notification)\n"
    "  pre-new, post-new, ...   one notification; notify:CODE raises any code\n"
    "  redraw                   redraws the active viewport\n"
    "  redraw:T                 the active viewport is switched to view type T (6 user,\n"
    "                           7 perspective, ...) and redrawn; redraw:T:I does so for\n"
    "                           viewport I instead\n"
    "  call:ID:ARG              calls function ID of the preference interface with ARG;\n"
    "                           call:ID calls it without an argument\n"
    "  toolbar                  the user reinstalls the companion toolbar\n"
    "\n"
    "Without events: startup new open redraw:6 save save.\n"
    "\n"
    "Exit status: 0, or 2 for bad usage or an unreadable --ini file.\n";

std::pair<std::string, std::string> SplitAt(const std::string& text, char separator, bool& found) {
  const std::size_t at = text.find(separator);
  found = at != std::string::npos;
  if (!found) return {text, std::string()};
  return {text.substr(0, at), text.substr(at + 1)};
}

std::uint32_t ParseClassIdPart(const std::string& text, const std::string& whole) {
  char* end = nullptr;
  const unsigned long long value = std::strtoull(text.c_str(), &end, 0);
  if (text.empty() || end != text.c_str() + text.size() || text[0] == '-' || value > 0xFFFFFFFFull)
    throw UsageError("--renderer: \"" + whole + "\" is not a class ID pair such as 0x73BAB286,0x77F8FD0C");
  return static_cast<std::uint32_t>(value);
}

void ParseRenderer(const std::string& text, ReplayOptions& options) {
  options.renderer = ReplayOptions::Renderer::Chosen;
  if (text == "vray") {
    options.rendererId = host::rendererGammaTargets[0];
  } else if (text == "vray-rt") {
    options.rendererId = host::rendererGammaTargets[1];
  } else if (text == "scanline") {
    options.rendererId = SimHost::kDefaultRenderer;
  } else if (text == "none") {
    options.renderer = ReplayOptions::Renderer::None;
  } else {
    bool found = false;
    const auto parts = SplitAt(text, ',', found);
    if (!found) throw UsageError("--renderer must be vray, vray-rt, scanline, none or a class ID pair A,B");
    options.rendererId = ClassId{ParseClassIdPart(parts.first, text), ParseClassIdPart(parts.second, text)};
  }
}

void ParseProperty(const std::string& text, ReplayOptions& options) {
  bool hasValue = false;
  const auto parts = SplitAt(text, '=', hasValue);
  int id = 0;
  if (parts.first == "author") id = host::kPropertyAuthor;
  if (parts.first == "subject") id = host::kPropertySubject;
  if (parts.first == "title") id = host::kPropertyTitle;
  if (id == 0) throw UsageError("--property: the name must be author, subject or title, not \"" + parts.first + "\"");
  options.properties.push_back({id, hasValue, Utf8ToWide(parts.second)});
}

void ParseViewportType(const std::string& text, ReplayOptions& options) {
  bool found = false;
  const auto parts = SplitAt(text, '=', found);
  if (!found) throw UsageError("--viewport-type takes I=T, e.g. 3=6");
  const int viewport = ParseInt32(parts.first, "the viewport of --viewport-type");
  if (viewport < 0 || viewport >= SimHost::kViewportCount)
    throw UsageError("the viewport of --viewport-type must be 0 to " + std::to_string(SimHost::kViewportCount - 1));
  options.viewportTypes.emplace_back(viewport, ParseInt32(parts.second, "the view type of --viewport-type"));
}

int DaysInMonth(int month, int year) {
  static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

void ParseDate(const std::string& text, ReplayOptions& options) {
  const std::size_t first = text.find('-');
  const std::size_t second = first == std::string::npos ? first : text.find('-', first + 1);
  if (second == std::string::npos) throw UsageError("--date takes D-M-YYYY, e.g. 3-7-2020");
  LocalDate date{ParseInt32(text.substr(0, first), "the day of --date"),
                 ParseInt32(text.substr(first + 1, second - first - 1), "the month of --date"),
                 ParseInt32(text.substr(second + 1), "the year of --date")};
  if (date.month < 1 || date.month > 12 || date.year < 1000 || date.year > 9999 || date.day < 1 ||
      date.day > DaysInMonth(date.month, date.year))
    throw UsageError("--date: \"" + text + "\" is not a day of the calendar (D-M-YYYY, a four-digit year)");
  options.date = date;
}

}  // namespace

int RunReplayCommand(const std::vector<std::string>& arguments) {
  ArgumentScanner scanner(arguments);
  ReplayOptions options;
  std::string ini;
  bool iniGiven = false;
  std::vector<std::string> eventTexts;
  std::string value;
  while (!scanner.Done()) {
    if (scanner.HelpRequested()) {
      WriteOut(kHelp);
      return kExitOk;
    }
    if (scanner.Option("--ini", ini)) {
      iniGiven = true;
    } else if (scanner.Option("--user", value)) {
      options.userName = Utf8ToWide(value);
    } else if (scanner.Option("--host", value)) {
      options.hostName = Utf8ToWide(value);
    } else if (scanner.Option("--date", value)) {
      ParseDate(value, options);
    } else if (scanner.Option("--time", value)) {
      options.time = ParseInt32(value, "--time");
    } else if (scanner.Option("--renderer", value)) {
      ParseRenderer(value, options);
    } else if (scanner.Option("--property", value)) {
      ParseProperty(value, options);
    } else if (scanner.Option("--viewport-type", value)) {
      ParseViewportType(value, options);
    } else if (scanner.Flag("--toolbar-script")) {
      options.toolbarScriptExists = true;
    } else {
      eventTexts.push_back(scanner.Positional());
    }
  }
  if (eventTexts.empty()) eventTexts = DefaultReplayEvents();
  std::vector<ReplayEvent> events;
  for (const std::string& text : eventTexts) {
    const std::vector<ReplayEvent> parsed = ParseReplayEvent(text);
    events.insert(events.end(), parsed.begin(), parsed.end());
  }

  // The file is checked here, as the tool's input; the plug-in reads it with its own
  // reader. Without --ini and without a Vantor.ini here, the missing file is what the
  // plug-in gets: every key at its default.
  const std::string file = iniGiven ? ini : WideToUtf8(kPreferenceFileName);
  std::string bytes;
  std::string error;
  if (!ReadFileBytes(file, bytes, error)) {
    if (iniGiven) {
      WriteError("hublet replay: cannot read " + file + ": " + error + "\n");
      return kExitUsage;
    }
    WriteError("hublet replay: no " + file + " here, so every key is at its default (give a file with --ini FILE)\n");
  }
  options.usePreferenceFile = true;
  options.preferenceFile = ProfilePath(file);
  WriteOut(RunReplay(options, events));
  return kExitOk;
}

}  // namespace tool
}  // namespace hublet
