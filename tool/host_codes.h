#pragma once
// The host's codes that a preference file holds, with their names: view types, shading
// (visual) styles and viewport layouts of 3ds Max 2017. The checker tests values against
// them and `hublet keys` prints them for the preference reference.
#include <cstddef>

namespace hublet {
namespace tool {

struct HostCode {
  int code;
  const char* name;
};

struct HostCodeSet {
  const char* title;  // what the codes are, e.g. "view types (VP0TYPE to VP3TYPE)"
  const HostCode* codes;
  std::size_t count;
};

extern const HostCodeSet kViewTypes;
extern const HostCodeSet kShadingStyles;
extern const HostCodeSet kViewportLayouts;

// The code's name, or null when the set has no such code.
const char* HostCodeName(const HostCodeSet& set, int code);

}  // namespace tool
}  // namespace hublet
