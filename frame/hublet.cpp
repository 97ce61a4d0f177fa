#include "frame/hublet.h"

#include <memory>

#include "frame/hook_table.h"
#include "frame/interface_table.h"
#include "prefs/projection.h"
#include "prefs/save_stamp.h"
#include "prefs/view_preferences.h"

namespace hublet {

Hublet::Hublet(Host& host, System& system) : host_(host), system_(system) {
  system_.InitializeCom();
  // The host name read when a scene is saved needs the sockets library; the destructor
  // releases this one use.
  system_.StartSockets();
  sceneBusy = 1;
  host_.RegisterDisplayCallback(true, *this);
  for (std::size_t i = 0; i < kHookCount; ++i) host_.RegisterNotification(kHooks[i].group, kHooks[i].code, *this);
}

Hublet::~Hublet() {
  sceneBusy = 0;
  system_.ReleaseSockets();
  for (std::size_t i = 0; i < kHookCount; ++i)
    host_.UnregisterNotification(kHooks[i].group, kHooks[i].code, *this);
}

std::uint32_t Hublet::Start() {
  sceneTime = host_.CurrentTime();
  const std::unique_ptr<ProfileReader> reader = system_.OpenProfile(PreferenceFilePath(host_));
  LoadSettings(*reader, settings);
  return host::kGupResultKeep;
}

void Hublet::OnNotification(HookGroup group, int code) {
  const Hook* hook = FindHook(group, code);
  if (hook == nullptr) return;
  if (hook->busy == BusyChange::Clear) sceneBusy = 0;
  if (hook->busy == BusyChange::Set) sceneBusy = 1;
  switch (hook->action) {
    case HookAction::None:
      break;
    case HookAction::ApplyViewPreferences:
      ApplyViewPreferences(*this);
      break;
    case HookAction::ClearMaterialEditor:
      if (settings.emptyMtlOnOpen == 1) host_.ExecuteScript(kClearMaterialEditorScript, false);
      break;
    case HookAction::StampSaveProperties:
      StampSaveProperties(*this);
      break;
  }
}

void Hublet::OnDisplay(TimeValue /*time*/, View* view) { EnforceProjection(host_, settings, view); }

int Hublet::CallInterface(int functionId, const InterfaceArguments& arguments) {
  const InterfaceFunction* function = FindInterfaceFunction(functionId);
  if (function == nullptr) return host::kFunctionStatusNoSuchFunction;
  if (arguments.Count() == 0) arguments.ThrowOutOfRange(host::kArgumentOutOfRangeText);
  SetSwitch(settings, *function, arguments.IntAt(0));
  return host::kFunctionStatusOk;
}

}  // namespace hublet

