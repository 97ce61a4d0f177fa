#pragma once
// The host's codes with their names. Those a preference file holds (view types, shading
// (visual) styles and viewport layouts of 3ds Max 2017): the checker tests values against
// them and `hublet keys` prints them for the preference reference. Those the plug-in
// hands the host (notifications, directories, summary properties, camera types): the
// replay names them in its transcript.
#include <cstddef>
#include <string>

#include "host/host_constants.h"

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
extern const HostCodeSet kNotificationCodes;
extern const HostCodeSet kDirectoryIds;
extern const HostCodeSet kSummaryPropertyIds;
extern const HostCodeSet kCameraTypes;

// The code's name, or null when the set has no such code.
const char* HostCodeName(const HostCodeSet& set, int code);
// The same, empty when the set has no such code.
std::string HostCodeText(const HostCodeSet& set, int code);

}  // namespace tool
}  // namespace hublet
