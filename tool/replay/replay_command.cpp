#include <climits>
#include <memory>
#include <utility>

#include "platform/wide_text.h"
#include "settings/settings.h"
#include "tool/common/command_line.h"
#include "tool/common/file_access.h"
#include "tool/common/shown_text.h"
#include "tool/replay/replay.h"
#include "tool/replay/replay_command.h"
#include "tool/replay/session_file.h"

namespace hublet {
namespace tool {
namespace {

const char kHelp[] =
    "Usage: hublet replay [OPTION...] [EVENT...]\n"
    "\n"
    "Loads and starts the plug-in in a simulated 3ds Max, runs the events in order, unloads\n"
    "it, and prints every call the plug-in made on the host, grouped under the event that\n"
    "caused it (\"== EVENT\" lines, calls indented, each named after its host codes).\n"
    "\n"
    "Options:\n"
    "  --session FILE           read options and events from FILE, one a line, at this\n"
    "                           point of the command line (# starts a comment line)\n"
    "  --follow-redraws N       perform the complete redraws the plug-in asks for, at most\n"
    "                           N in a row (default 0: recorded, not performed), until\n"
    "                           it asks again with the viewports as an earlier one found\n"
    "                           them (it would ask forever)\n"
    "  --format text|json       the transcript (default) or the hublet-replay/1 document\n"
    "  --bare                   no annotations: the transcript for diffing\n"
    "\n"
    "What the simulated host answers (each also an event NAME:VALUE, or NAME for a flag,\n"
    "that changes it between two events):\n"
    "  --ini FILE               the preference file (default: Vantor.ini in the current\n"
    "                           folder when there is one); --no-ini: there is none\n"
    "  --user NAME              the account name (default anna)\n"
    "  --host NAME              the machine name (default RENDER07)\n"
    "  --date D-M-YYYY          today's date (default 3-7-2020)\n"
    "  --time TICKS             the host's current time (default 0)\n"
    "  --renderer R             vray, vray-rt, scanline (default), none, or a class ID\n"
    "                           pair A,B (e.g. 0x73BAB286,0x77F8FD0C)\n"
    "  --property NAME=TEXT     a summary property of the open scene: author, subject or\n"
    "                           title; NAME alone makes one that exists without a value\n"
    "  --no-property NAME       the summary property NAME does not exist (the default)\n"
    "  --viewport-type I=T      viewport I (0 to 3) shows view type T\n"
    "                           (default: 0=2 top, 1=4 front, 2=0 left, 3=7 perspective)\n"
    "  --view-transform I=X,Y,Z,...\n"
    "                           viewport I's view matrix: twelve numbers, comma-separated,\n"
    "                           the three axes then the translation (default identity)\n"
    "  --active I               viewport I is the active one (default 3)\n"
    "  --no-shading-extension I viewport I's view has no view-shading extension\n"
    "  --dir NAME=TEXT          a host directory: plugcfg, scripts or an ID; any TEXT\n"
    "                           (default C:\\3dsMax2017\\plugcfg and C:\\3dsMax2017\\scripts)\n"
    "  --toolbar-script         the companion toolbar's script file exists;\n"
    "                           --no-toolbar-script: it does not (default)\n"
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
    "  redraw-no-view           a redraw that hands the plug-in no view\n"
    "  call:ID:ARG              calls function ID of the preference interface with ARG;\n"
    "                           call:ID calls it without an argument\n"
    "  toolbar                  the user reinstalls the companion toolbar\n"
    "  state                    prints the plug-in's settings, sceneTime, sceneBusy and\n"
    "                           last save date\n"
    "  user:NAME, ini:FILE, no-ini, dir:scripts=TEXT, active:I, ...\n"
    "                           a host option above, changed from here on\n"
    "\n"
    "Without events: startup new open redraw:6 save save.\n"
    "\n"
    "Session files may be UTF-8 (with or without a byte-order mark) or UTF-16 with one,\n"
    "with LF, CRLF or CR line ends; a line holds at most 4096 bytes.\n"
    "\n"
    "Exit status: 0, or 2 for bad usage, a session or preference file that cannot be read,\n"
    "or an error in a session file (reported as FILE:LINE).\n";
static_assert(kMaxSessionLineBytes == 4096, "the help above tells the longest line of a session file");

// A session file, read once: the second reading of the arguments takes its text from here.
struct SessionFile {
  std::string folder;  // where the file names in it start
  std::string shown;   // its name in messages
  std::string text;
};

struct ReplayInput {
  ReplayOptions options;
  bool eventsGiven = false;
  bool iniGiven = false;
  bool bare = false;
  bool json = false;
  std::vector<SessionFile> sessions;
};

// A preference file named in a session file is found beside it.
std::string Beside(const std::string& folder, const std::string& path) {
  const bool absolute = !path.empty() && (path[0] == '/' || path[0] == '\\' || (path.size() > 1 && path[1] == ':'));
  return absolute ? path : folder + path;
}

// The file as the profile reader takes it; checked that it can be read when asked, which
// opens it without reading it.
void ResolvePreferenceFile(HostChange& change, const std::string& folder, bool check) {
  if (!change.present) return;
  change.given = Beside(folder, change.given);
  std::string error;
  if (check && !CanReadFile(change.given, error))
    throw InputError("cannot read " + Escaped(Utf8ToWide(change.given)) + ": " + error);
  change.path = ProfilePath(change.given);
}

// A mistake on a line of a session file, told with the file and line.
template <class Error>
Error AtLine(const SessionFile& session, int line, const Error& error) {
  return Error(AtSessionLine(session.shown, line, error.what()));
}

// Reads the arguments, with each session file's lines where the file is named. The replay
// reads them twice, so that no session waits in memory as events: the first reading takes
// the options, reads the session files and checks every event, so that a mistake stops the
// replay before it starts; the second hands each event to the replay as it comes.
class ArgumentReading {
 public:
  // replay: null for the first reading.
  ArgumentReading(ReplayInput& input, Replay* replay) : input_(input), replay_(replay) {}

  // False, having read nothing more, when the arguments ask for help.
  bool Read(const std::vector<std::string>& arguments) {
    ArgumentScanner scanner(arguments);
    while (!scanner.Done()) {
      if (scanner.HelpRequested()) return false;
      Take(scanner, std::string(), false);
    }
    return true;
  }

  void Event(const std::string& word, const std::string& folder) {
    for (ReplayEvent& event : ParseReplayEvent(word)) {
      if (event.kind == ReplayEvent::Kind::Host && event.change.what == HostChange::What::PreferenceFile)
        ResolvePreferenceFile(event.change, folder, replay_ == nullptr);
      if (replay_ != nullptr) replay_->Run(event);
    }
    input_.eventsGiven = true;
  }

 private:
  // Takes one option or event; folder is where relative file names start.
  void Take(ArgumentScanner& scanner, const std::string& folder, bool inSession) {
    std::string value;
    for (const HostChangeName& name : HostChangeNames()) {
      const std::string option = std::string("--") + name.name;
      const bool taken = name.takesValue ? scanner.Option(option.c_str(), value) : scanner.Flag(option.c_str());
      if (taken) {
        if (replay_ == nullptr) HostOption(option, name, value, folder);
        return;
      }
    }
    if (scanner.Option("--session", value)) {
      if (inSession) throw UsageError("a session file cannot read another");
      Session(value);
    } else if (scanner.Option("--follow-redraws", value)) {
      input_.options.followRedraws = ParseIntInRange(value, "--follow-redraws", 0, INT_MAX);
    } else if (scanner.Option("--format", value)) {
      if (value != "text" && value != "json") throw UsageError("--format must be text or json");
      input_.json = value == "json";
    } else if (scanner.Flag("--bare")) {
      input_.bare = true;
    } else {
      Event(scanner.Positional(), folder);
    }
  }

  void HostOption(const std::string& option, const HostChangeName& name, const std::string& value,
                  const std::string& folder) {
    HostChange change;
    try {
      ParseHostChange(name.name, name.takesValue ? &value : nullptr, change);
    } catch (const UsageError& error) {
      throw UsageError(option + ": " + error.what());
    }
    if (change.what == HostChange::What::PreferenceFile) {
      ResolvePreferenceFile(change, folder, true);
      input_.iniGiven = true;
    }
    input_.options.host.push_back(change);
  }

  void Session(const std::string& file) {
    if (replay_ == nullptr) input_.sessions.push_back(ReadSession(file));
    const SessionFile& session = input_.sessions.at(nextSession_++);
    ForEachSessionLine(session.text, session.shown, [this, &session](const SessionLine& line) {
      try {
        ArgumentScanner scanner(line.words);
        while (!scanner.Done()) {
          if (scanner.HelpRequested()) throw UsageError("--help has no place in a session file");
          Take(scanner, session.folder, true);
        }
      } catch (const UsageError& e) {
        throw AtLine(session, line.number, e);
      } catch (const InputError& e) {
        throw AtLine(session, line.number, e);
      }
    });
  }

  static SessionFile ReadSession(const std::string& file) {
    SessionFile session;
    session.shown = Escaped(Utf8ToWide(file));
    std::string bytes;
    std::string error;
    if (!ReadFileBytes(file, bytes, error, SessionReadEnough()))
      throw InputError("cannot read " + session.shown + ": " + error);
    const std::size_t slash = file.find_last_of("/\\");
    session.folder = slash == std::string::npos ? std::string() : file.substr(0, slash + 1);
    session.text = SessionText(std::move(bytes), session.shown);
    return session;
  }

  ReplayInput& input_;
  Replay* replay_;
  std::size_t nextSession_ = 0;
};

}  // namespace

int RunReplayCommand(const std::vector<std::string>& arguments) {
  ReplayInput input;
  if (!ArgumentReading(input, nullptr).Read(arguments)) {
    WriteOut(kHelp);
    return kExitOk;
  }

  // Without --ini the plug-in gets Vantor.ini of the current folder, or, when there is
  // none, the missing file: every key at its default.
  if (!input.iniGiven) {
    HostChange change;
    const std::string name = WideToUtf8(kPreferenceFileName);
    ParseHostChange("ini", &name, change);
    try {
      ResolvePreferenceFile(change, std::string(), true);
      input.options.host.insert(input.options.host.begin(), change);
    } catch (const InputError&) {
      WriteError("hublet replay: no " + name + " here, so every key is at its default (give a file with --ini FILE)\n");
    }
  }

  const std::unique_ptr<ReplayOutput> output =
      input.json ? JsonTranscript(WriteOut) : TextTranscript(input.bare, WriteOut);
  Replay replay(input.options, *output);
  replay.Start();
  ArgumentReading running(input, &replay);
  running.Read(arguments);
  if (!input.eventsGiven)
    for (const std::string& word : DefaultReplayEvents()) running.Event(word, std::string());
  replay.End();
  return kExitOk;
}

}  // namespace tool
}  // namespace hublet
