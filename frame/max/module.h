#pragma once
// The module itself: its handle and its string table. SDK-facing.
#include <max.h>

namespace hublet {
namespace max_binding {

// Null until the loader has called DllMain, which happens after static initialisation.
HINSTANCE ModuleHandle();

// Loads string-table entry id into buffer (of capacity characters). Null when the module
// handle is not known yet or the table has no such entry.
const MCHAR* LoadModuleString(int id, MCHAR* buffer, int capacity);

}  // namespace max_binding
}  // namespace hublet
