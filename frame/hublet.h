#pragma once
// The plug-in object, host-agnostic: its state, its life (construction, Start, Stop,
// destruction), the scene-event hooks, the display operation and the preference
// interface. The 3ds Max classes forward every callback here in one line.
#include <cstdint>

#include "host/host.h"
#include "platform/system.h"
#include "settings/settings.h"

namespace hublet {

class Hublet final : public NotificationHandler, public DisplayHandler {
 public:
  // Initialises COM and the sockets library, marks the scene idle and registers the
  // display callback and every scene-event hook with the host.
  Hublet(Host& host, System& system);
  // Marks the scene busy, releases the sockets library and unregisters the hooks. The
  // display callback stays registered until the host exits.
  ~Hublet();
  Hublet(const Hublet&) = delete;
  Hublet& operator=(const Hublet&) = delete;

  // Captures the host's current time and loads the settings; 0 keeps the plug-in loaded.
  std::uint32_t Start();
  void Stop() {}

  void OnNotification(HookGroup group, int code) override;
  void OnDisplay(TimeValue time, View* view) override;

  // A call on the published preference interface: the host's status code.
  int CallInterface(int functionId, const InterfaceArguments& arguments);

  Host& host() { return host_; }
  System& system() { return system_; }

  HubletSettings settings{};
  TimeValue sceneTime = 0;  // captured at Start, never refreshed
  int sceneBusy = 0;        // 0 between a scene operation's pre- and post-event
  int saveDay = 0;
  int saveMonth = 0;
  int saveYear = 0;

 private:
  Host& host_;
  System& system_;
};

}  // namespace hublet
