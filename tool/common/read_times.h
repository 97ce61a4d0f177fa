#pragma once
// When the plug-in reads a preference key, as the tool names it in every format.
#include "settings/preference_keys.h"

namespace hublet {
namespace tool {

const char* ReadWhenId(ReadWhen when);  // "start", "layout", "gamma", "frame-rate"

}  // namespace tool
}  // namespace hublet
