#pragma once
// The plug-in object, host-agnostic: its state, its life (construction, Start, Stop,
// destruction), the scene-event hooks, the display operation and the preference
// interface. The 3ds Max classes forward every callback here in one line.
#include <cstdint>

#include "host/host.h"
#include "platform/system.h"
#include "settings/plugin_state.h"

namespace hublet {

class Hublet final : public NotificationHandler, public DisplayHandler {
 public:
  // Initialises COM, marks the scene idle and registers the display callback and every
  // scene-event hook with the host.
  Hublet(Host& host, System& system);
  // Marks the scene busy, releases the sockets library if Start started it and
  // unregisters the hooks. The display callback stays registered until the host exits,
  // detached from this object, so a redraw after this does nothing.
  ~Hublet();
  Hublet(const Hublet&) = delete;
  Hublet& operator=(const Hublet&) = delete;

  // Starts the sockets library (once), captures the host's current time and loads the
  // settings; 0 keeps the plug-in loaded.
  std::uint32_t Start();
  void Stop() {}

  void OnNotification(HookGroup group, int code) override;
  void OnDisplay(TimeValue time, View* view) override;

  // A call on the published preference interface: the host's status code.
  int CallInterface(int functionId, const InterfaceArguments& arguments);

  PluginState state;

 private:
  bool socketsStarted_ = false;
};

}  // namespace hublet
