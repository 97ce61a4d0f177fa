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

extern const InterfaceDeclaration kPreferenceInterface;

// The function with this ID, or null.
const InterfaceFunction* FindInterfaceFunction(int id);

// Stores 1 for a non-zero argument and 0 otherwise; returns what it stored.
int SetSwitch(HubletSettings& settings, const InterfaceFunction& function, int argument);

}  // namespace hublet
