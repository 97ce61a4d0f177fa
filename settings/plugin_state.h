#pragma once
// What the preference actions act on and keep: the host and system, the settings record,
// the time captured at start, the scene-busy flag and the date of the last save. The
// plug-in object owns one; the actions take it rather than the object, so they never
// reach up into the frame.
#include "host/host.h"
#include "platform/system.h"
#include "settings/settings.h"

namespace hublet {

struct PluginState {
  PluginState(Host& theHost, System& theSystem) : host(theHost), system(theSystem) {}
  PluginState(const PluginState&) = delete;
  PluginState& operator=(const PluginState&) = delete;

  Host& host;
  System& system;
  HubletSettings settings{};
  TimeValue sceneTime = 0;  // captured at Start, never refreshed
  int sceneBusy = 0;        // 0 between a scene operation's pre- and post-event
  int saveDay = 0;
  int saveMonth = 0;
  int saveYear = 0;
};

}  // namespace hublet
