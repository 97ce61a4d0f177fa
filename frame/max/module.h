#pragma once
// The module itself: its handle and its string table. SDK-facing.
#include <max.h>

namespace hublet {
namespace max_binding {

// This module's handle, from its image base: valid from static initialisation on.
HINSTANCE ModuleHandle();

// Loads string-table entry id into buffer (of capacity characters). Null when the table
// has no such entry.
const MCHAR* LoadModuleString(int id, MCHAR* buffer, int capacity);

}  // namespace max_binding
}  // namespace hublet
