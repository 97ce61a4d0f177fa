#pragma once
// Conversions between the port's plain value types and the SDK's. SDK-facing.
#include <max.h>

#include "host/host.h"

namespace hublet {
namespace max_binding {

// Every matrix we hand to the host goes through here, so its identity flags are always
// recomputed from the rows we set.
Matrix3 ToMatrix3(const Matrix43& matrix);
Matrix43 ToMatrix43(const Matrix3& matrix);

inline Class_ID ToClassId(ClassId id) { return Class_ID(id.partA, id.partB); }
inline Interface_ID ToInterfaceId(ClassId id) { return Interface_ID(id.partA, id.partB); }
inline ClassId FromClassId(const Class_ID& id) {
  return {static_cast<std::uint32_t>(id.PartA()), static_cast<std::uint32_t>(id.PartB())};
}

}  // namespace max_binding
}  // namespace hublet
