#include "frame/interface_table.h"

namespace hublet {
namespace {

constexpr InterfaceFunction Setter(int id, int HubletSettings::*field, const char* fieldName) {
  return {id, L"", ParamKind::Void, L"", ParamKind::Int, field, fieldName};
}

using S = HubletSettings;

const InterfaceFunction kFunctions[] = {
    Setter(10, &S::forcePersp, "forcePersp"),
    Setter(11, &S::forceOrtho, "forceOrtho"),
    Setter(12, &S::emptyMtlOnOpen, "emptyMtlOnOpen"),
    Setter(13, &S::emptyMtlOnSave, "emptyMtlOnSave"),
    Setter(14, &S::shadedOnOpen, "shadedOnOpen"),
    Setter(15, &S::objColourOnOpen, "objColourOnOpen"),
    Setter(16, &S::boxOnSave, "boxOnSave"),
    Setter(17, &S::objColourOnSave, "objColourOnSave"),
    Setter(18, &S::useViewLayout, "useViewLayout"),
    Setter(19, &S::useDisplayModes, "useDisplayModes"),
    Setter(20, &S::spareViewFlag, "spareViewFlag"),
    Setter(21, &S::useGamma, "useGamma"),
    Setter(22, &S::useFrameRate, "useFrameRate"),
};

static_assert(sizeof(kFunctions) / sizeof(kFunctions[0]) == kPreferenceFunctionCount,
              "the host's descriptor lists every function");

}  // namespace

const InterfaceDeclaration kPreferenceInterface = {
    host::kPreferenceInterfaceId, host::kPreferenceInterfaceName,
    host::kPreferenceInterfaceDescription, kFunctions, kPreferenceFunctionCount};

const InterfaceFunction* FindInterfaceFunction(int id) {
  for (const InterfaceFunction& function : kFunctions)
    if (function.id == id) return &function;
  return nullptr;
}

int SetSwitch(HubletSettings& settings, const InterfaceFunction& function, int argument) {
  settings.*function.field = argument != 0 ? 1 : 0;
  return settings.*function.field;
}

}  // namespace hublet
