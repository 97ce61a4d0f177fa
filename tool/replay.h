#pragma once
// A session of the plug-in in the simulated host, as the host would run it, written out
// as the transcript of every host call the plug-in makes, grouped under the event that
// caused it.
#include <string>
#include <vector>

#include "host/host_constants.h"
#include "platform/system.h"

namespace hublet {
namespace tool {

struct ReplayProperty {
  int id;  // summary property: 4 author, 3 subject, 2 title
  bool hasValue;
  std::wstring text;
};

// What the simulated host answers. The defaults are the simulated host's own.
struct ReplayOptions {
  bool usePreferenceFile = false;
  std::wstring preferenceFile;  // as the profile reader takes it
  std::wstring userName = L"anna";
  std::wstring hostName = L"RENDER07";
  LocalDate date{3, 7, 2020};
  int time = 0;
  enum class Renderer { HostDefault, None, Chosen } renderer = Renderer::HostDefault;
  ClassId rendererId{0, 0};
  std::vector<ReplayProperty> properties;
  std::vector<std::pair<int, int>> viewportTypes;  // viewport, view type
  bool toolbarScriptExists = false;
};

struct ReplayEvent {
  enum class Kind { Notification, Redraw, Call, Toolbar } kind = Kind::Notification;
  std::string name;       // the notification's name, e.g. "post-new"
  int code = 0;           // notification code
  int viewport = -1;      // redraw: -1 for the active viewport
  int viewType = -1;      // redraw: -1 keeps the viewport's type
  bool setsType = false;  // redraw: whether viewType is set first
  int functionId = 0;     // call
  bool hasArgument = false;
  int argument = 0;
};

// One event of the command line; a pair name ("new") gives its pre- and post-event.
// Throws UsageError for an unknown or malformed event.
std::vector<ReplayEvent> ParseReplayEvent(const std::string& text);

// The session replayed when no event is given.
std::vector<std::string> DefaultReplayEvents();

// Loads and starts the plug-in, runs the events, unloads it; returns the transcript.
std::string RunReplay(const ReplayOptions& options, const std::vector<ReplayEvent>& events);

// The notification names the replay knows, in hook-table order, for help texts.
std::string ReplayEventNames();

}  // namespace tool
}  // namespace hublet
