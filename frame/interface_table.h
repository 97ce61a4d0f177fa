#pragma once
// The published preference interface "iGup": its declaration, which the 3ds Max binding
// turns into the host's descriptor, and the switch each function sets.
#include <cstddef>

#include "host/host_constants.h"
#include "settings/settings.h"

namespace hublet {

enum class ParamKind { Void, Int };

struct InterfaceFunction {
  int id;
  const wchar_t* internalName;  // empty on purpose: callers reach the functions by ID
  ParamKind returnType;
  const wchar_t* argumentName;  // the one argument, also unnamed
  ParamKind argumentType;
  int HubletSettings::*field;
  const char* fieldName;
};

// The host's descriptor lists its functions one by one, so their number is fixed here.
constexpr std::size_t kPreferenceFunctionCount = 13;

struct InterfaceDeclaration {
  ClassId id;
  const wchar_t* internalName;
  int descriptionString;  // string-table entry
  const InterfaceFunction* functions;
  std::size_t functionCount;
};

constexpr InterfaceFunction Setter(int id, int HubletSettings::*field, const char* fieldName) {
  return {id, L"", ParamKind::Void, L"", ParamKind::Int, field, fieldName};
}

// Literal data in the header: every file that reads it (the binding builds the host's
// descriptor from it during static initialisation) gets it constant-initialised, never
// depending on the order in which another file's statics are initialised.
constexpr InterfaceFunction kPreferenceFunctions[] = {
    Setter(10, &HubletSettings::forcePersp, "forcePersp"),
    Setter(11, &HubletSettings::forceOrtho, "forceOrtho"),
    Setter(12, &HubletSettings::emptyMtlOnOpen, "emptyMtlOnOpen"),
    Setter(13, &HubletSettings::emptyMtlOnSave, "emptyMtlOnSave"),
    Setter(14, &HubletSettings::shadedOnOpen, "shadedOnOpen"),
    Setter(15, &HubletSettings::objColourOnOpen, "objColourOnOpen"),
    Setter(16, &HubletSettings::boxOnSave, "boxOnSave"),
    Setter(17, &HubletSettings::objColourOnSave, "objColourOnSave"),
    Setter(18, &HubletSettings::useViewLayout, "useViewLayout"),
    Setter(19, &HubletSettings::useDisplayModes, "useDisplayModes"),
    Setter(20, &HubletSettings::spareViewFlag, "spareViewFlag"),
    Setter(21, &HubletSettings::useGamma, "useGamma"),
    Setter(22, &HubletSettings::useFrameRate, "useFrameRate"),
};

static_assert(sizeof(kPreferenceFunctions) / sizeof(kPreferenceFunctions[0]) == kPreferenceFunctionCount,
              "the host's descriptor lists every function");

constexpr InterfaceDeclaration kPreferenceInterface = {
    host::kPreferenceInterfaceId, host::kPreferenceInterfaceName, host::kPreferenceInterfaceDescription,
    kPreferenceFunctions, kPreferenceFunctionCount};

// Fails to compile if the declaration stops being a constant expression. Visual Studio 2015
// has been seen to refuse a pointer-to-member comparison through a constant array as not
// constant (C2131) though it is; the compilers from 2017 on, gcc and clang evaluate it.
#if !defined(_MSC_VER) || _MSC_VER >= 1910
static_assert(kPreferenceInterface.functions[kPreferenceFunctionCount - 1].id == 22 &&
                  kPreferenceInterface.functions[0].field == &HubletSettings::forcePersp,
              "the interface declaration is constant-initialised");
#endif

// The function with this ID, or null.
const InterfaceFunction* FindInterfaceFunction(int id);

// Stores 1 for a non-zero argument and 0 otherwise; returns what it stored.
int SetSwitch(HubletSettings& settings, const InterfaceFunction& function, int argument);

}  // namespace hublet
