#include "frame/hublet.h"

#include <memory>

#include "frame/hook_table.h"
#include "frame/interface_table.h"
#include "prefs/projection.h"
#include "prefs/save_stamp.h"
#include "prefs/view_preferences.h"

namespace hublet {

Hublet::Hublet(Host& host, System& system) : state(host, system) {
  // CoInitialize is tolerated here, under the loader lock: the host initialises COM on its
  // main thread before it loads plug-ins, so this call only counts one more use and
  // starts nothing. The sockets library is started in Start instead, since Microsoft
  // forbids WSAStartup while the loader lock is held.
  state.system.InitializeCom();
  state.sceneBusy = 1;
  state.host.RegisterDisplayCallback(true, *this);
  for (std::size_t i = 0; i < kHookCount; ++i)
    state.host.RegisterNotification(kHooks[i].group, kHooks[i].code, *this);
}

Hublet::~Hublet() {
  state.sceneBusy = 0;
  if (socketsStarted_) state.system.ReleaseSockets();
  state.host.DetachDisplayHandler(*this);
  for (std::size_t i = 0; i < kHookCount; ++i)
    state.host.UnregisterNotification(kHooks[i].group, kHooks[i].code, *this);
}

std::uint32_t Hublet::Start() {
  // The host name read when a scene is saved needs the sockets library; the destructor
  // releases this one use.
  if (!socketsStarted_) state.system.StartSockets();
  socketsStarted_ = true;
  state.sceneTime = state.host.CurrentTime();
  const std::unique_ptr<ProfileReader> reader = state.system.OpenProfile(PreferenceFilePath(state.host));
  LoadSettings(*reader, state.settings);
  return host::kGupResultKeep;
}

void Hublet::OnNotification(HookGroup group, int code) {
  const Hook* hook = FindHook(group, code);
  if (hook == nullptr) return;
  if (hook->busy == BusyChange::Clear) state.sceneBusy = 0;
  if (hook->busy == BusyChange::Set) state.sceneBusy = 1;
  switch (hook->action) {
    case HookAction::None:
      break;
    case HookAction::ApplyViewPreferences:
      ApplyViewPreferences(state);
      break;
    case HookAction::ClearMaterialEditor:
      if (state.settings.emptyMtlOnOpen == 1) state.host.ExecuteScript(kClearMaterialEditorScript, false);
      break;
    case HookAction::StampSaveProperties:
      StampSaveProperties(state);
      break;
  }
}

void Hublet::OnDisplay(TimeValue /*time*/, View* view) { EnforceProjection(state.host, state.settings, view); }

int Hublet::CallInterface(int functionId, const InterfaceArguments& arguments) {
  const InterfaceFunction* function = FindInterfaceFunction(functionId);
  if (function == nullptr) return host::kFunctionStatusNoSuchFunction;
  if (arguments.Count() == 0) arguments.ThrowOutOfRange(host::kArgumentOutOfRangeText);
  SetSwitch(state.settings, *function, arguments.IntAt(0));
  return host::kFunctionStatusOk;
}

}  // namespace hublet

