#pragma once
// The plug-in's state as the replay's `state` event shows it: sceneTime, sceneBusy, the
// last save date and every field of the settings record, grouped by when it is read.
#include <string>

#include "settings/plugin_state.h"

namespace hublet {
namespace tool {

std::string StateText(const PluginState& state);  // lines for the transcript
std::string StateJson(const PluginState& state);  // the `state` member of the JSON event

}  // namespace tool
}  // namespace hublet
