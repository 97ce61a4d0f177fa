#pragma once
// What each scene notification does. The table drives registration, unregistration and
// dispatch alike, so the three cannot drift apart.
#include <cstddef>

#include "host/host.h"

namespace hublet {

enum class BusyChange { Leave, Clear, Set };
enum class HookAction { None, ApplyViewPreferences, ClearMaterialEditor, StampSaveProperties };

struct Hook {
  int code;
  HookGroup group;
  BusyChange busy;   // applied first
  HookAction action;
};

extern const Hook kHooks[];
extern const std::size_t kHookCount;

// The row for a notification code of a group, or null.
const Hook* FindHook(HookGroup group, int code);

// The one-line host script that clears the material editor's slots.
extern const wchar_t* const kClearMaterialEditorScript;

}  // namespace hublet
