#pragma once
// A session of the plug-in in the simulated host, as the host would run it: the host set
// up, the plug-in loaded and started, events run, the plug-in unloaded. What it records
// is every host call the plug-in made, grouped under the event that caused it, with what
// the replay itself saw of the plug-in's state.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/host.h"
#include "host/sim/transcript.h"
#include "platform/system.h"

namespace hublet {
namespace tool {

// One answer of the simulated host changed: as an option before the plug-in loads, or as
// an event between two others. Both are written with the same words (--user bob, user:bob).
struct HostChange {
  enum class What {
    User, Machine, Date, Time, Renderer, Property, NoProperty, ViewType, ViewTransform, ActiveViewport,
    NoShadingExtension, Directory, ToolbarScript, PreferenceFile
  };
  What what;
  std::wstring text;     // User, Machine, Property's value, Directory's path
  std::wstring path;     // PreferenceFile: the real file as the profile reader takes it, empty for none
  std::string given;     // PreferenceFile: the file as the user named it
  int number;            // Time, ActiveViewport, (No)Property ID, Directory ID, ViewType's type
  int viewport;          // ViewType, ViewTransform, NoShadingExtension
  Matrix43 transform;    // ViewTransform
  bool present;          // Renderer, Property (has a value), ToolbarScript, PreferenceFile
  LocalDate date;
  ClassId renderer;
};

struct HostChangeName {
  const char* name;  // the option without "--", the event before ":"
  HostChange::What what;
  bool takesValue;
  bool present;  // what a flag sets
};
const std::vector<HostChangeName>& HostChangeNames();

// A name, a text or a path of the host: longer is a mistake, and would only cost memory.
constexpr std::size_t kMaxValueBytes = 4096;

// Parses the option --NAME VALUE (or the event NAME:VALUE); value is null for a flag.
// False when NAME is no host change; throws UsageError for a malformed value. A
// PreferenceFile change keeps the file's name in `given` for the caller to resolve into
// `path`.
bool ParseHostChange(const std::string& name, const std::string* value, HostChange& change);

struct ReplayEvent {
  enum class Kind { Notification, Redraw, Call, Toolbar, Host, State } kind = Kind::Notification;
  std::string word;       // as given, e.g. "redraw:6" or "user:bob"
  std::string name;       // notification: its name, e.g. "post-new"
  int code = 0;           // notification code
  int viewport = -1;      // redraw: -1 for the active viewport
  int viewType = -1;      // redraw: -1 keeps the viewport's type
  bool setsType = false;  // redraw: whether viewType is set first
  bool noView = false;    // redraw: the display callback gets no view
  int functionId = 0;     // call
  bool hasArgument = false;
  int argument = 0;
  HostChange change{};    // host
};

// One event of the command line; a pair name ("new") gives its pre- and post-event.
// Throws UsageError for an unknown or malformed event.
std::vector<ReplayEvent> ParseReplayEvent(const std::string& text);

// The session replayed when no event is given.
std::vector<std::string> DefaultReplayEvents();

struct ReplayOptions {
  std::vector<HostChange> host;  // applied in order before the plug-in loads
  int followRedraws = 0;         // how many requested redraws in a row to perform; 0: none
};

// Something the replay reports itself, beside the host calls: an interface call's
// answer, the plug-in's state, why it stopped following redraws.
struct ReplayFact {
  std::string text;        // for the transcript; may span lines
  std::string jsonMember;  // its member in the event's JSON object
  std::string json;        // and that member's value
};

struct ReplayGroup {
  std::size_t step = 0;  // the group's place in the session, from 0 (load)
  std::string event;     // the header: "post-new (notification 8)", "call 12 5", ...
  std::string note;      // names for the header's codes, or empty
  bool busyChanged = false;
  int busy = 0;          // sceneBusy after the event, when it changed
  std::vector<HostCall> calls;
  std::vector<ReplayFact> facts;
};

// The simulated host as it stands when the plug-in loads.
struct ReplayHost {
  std::wstring user;
  std::wstring machine;
  LocalDate date;
  int time;
  Lookup<ClassId> renderer;
  std::vector<int> viewTypes;
  std::vector<bool> shadingExtension;
  std::vector<Matrix43> transforms;
  int activeViewport;
  std::vector<std::pair<int, Lookup<std::wstring>>> properties;  // by ID, those that exist
  std::vector<std::pair<int, std::wstring>> directories;         // plug-in configuration, scripts
  bool toolbarScript;
  std::string preferenceFile;  // as given; empty for none
};

// Where a replay goes as it runs: the host once, then each group as soon as it is
// complete, so that no transcript waits in memory whatever the session's length.
class ReplayOutput {
 public:
  virtual ~ReplayOutput() = default;
  virtual void Host(const ReplayHost& host) = 0;
  virtual void Group(const ReplayGroup& group) = 0;
  virtual void End() = 0;
};

using ReplayWriter = std::function<void(const std::string&)>;

// The transcript for people: "# host" lines, then each group as "== EVENT" and its calls
// indented, each annotated with the names of its codes unless bare.
std::unique_ptr<ReplayOutput> TextTranscript(bool bare, ReplayWriter write);

// The "hublet-replay/1" JSON document (see docs/hublet.md), ended by a newline. Its calls
// follow all of its events, so they wait in a temporary file until the events are written.
std::unique_ptr<ReplayOutput> JsonTranscript(ReplayWriter write);

// The plug-in in the simulated host over a session given event by event: Start loads and
// starts it, Run runs one event (and the redraws it asks for, when they are followed), End
// unloads it. Each group goes to the output as it completes.
class Replay {
 public:
  Replay(const ReplayOptions& options, ReplayOutput& output);
  ~Replay();
  void Start();
  void Run(const ReplayEvent& event);
  void End();

 private:
  class Runner;
  std::unique_ptr<Runner> runner_;
};

}  // namespace tool
}  // namespace hublet
