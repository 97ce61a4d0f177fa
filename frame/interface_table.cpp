#include "frame/interface_table.h"

namespace hublet {

const InterfaceFunction* FindInterfaceFunction(int id) {
  for (const InterfaceFunction& function : kPreferenceFunctions)
    if (function.id == id) return &function;
  return nullptr;
}

int SetSwitch(HubletSettings& settings, const InterfaceFunction& function, int argument) {
  settings.*function.field = argument != 0 ? 1 : 0;
  return settings.*function.field;
}

}  // namespace hublet
