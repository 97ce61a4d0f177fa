#include "tool/replay/state_event.h"

#include "host/sim/sim_system.h"
#include "host/sim/transcript.h"
#include "settings/preference_keys.h"
#include "tool/common/json_writer.h"
#include "tool/common/read_times.h"

namespace hublet {
namespace tool {
namespace {

std::string Int(int value) { return std::to_string(value); }

// One settings field's value, for the transcript or as JSON.
std::string FieldValue(const HubletSettings& s, const PreferenceKey& key, bool json) {
  if (key.intField != nullptr) return Int(s.*key.intField);
  if (key.floatField != nullptr) return json ? JsonFloat(s.*key.floatField) : FormatFloat(s.*key.floatField);
  std::string list = "[";
  for (int i = 0; i < kStoredViewCount; ++i) list += (i == 0 ? "" : json ? ", " : " ") + Int((s.*key.viewField)[i]);
  return list + "]";
}

}  // namespace

std::string StateText(const PluginState& state) {
  const bool saved = state.saveDay != 0;
  std::string text = "sceneTime " + Int(state.sceneTime) + ", sceneBusy " + Int(state.sceneBusy) +
                     ", last save " +
                     (saved ? FormatDate(LocalDate{state.saveDay, state.saveMonth, state.saveYear}) : "none");
  const HubletSettings& s = state.settings;
  for (const ReadWhen when : {ReadWhen::AtStart, ReadWhen::LayoutStage, ReadWhen::GammaStage, ReadWhen::FrameRateStage}) {
    text += std::string("\n") + ReadWhenId(when) + ":";
    const char* separator = " ";
    for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
      const PreferenceKey& key = kPreferenceKeys[k];
      if (key.when != when) continue;
      text += separator + std::string(key.field) + " " + FieldValue(s, key, false);
      separator = ", ";
    }
  }
  return text;
}

std::string StateJson(const PluginState& state) {
  const bool saved = state.saveDay != 0;
  std::string json = "{\"sceneTime\": " + Int(state.sceneTime) + ", \"sceneBusy\": " + Int(state.sceneBusy) +
                     ", \"lastSave\": " +
                     (saved ? JsonString(FormatDate(LocalDate{state.saveDay, state.saveMonth, state.saveYear}))
                            : "null") +
                     ", \"settings\": {";
  const HubletSettings& s = state.settings;
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    json += (k > 0 ? ", " : "") + JsonString(key.field) + ": " + FieldValue(s, key, true);
  }
  return json + "}}";
}

}  // namespace tool
}  // namespace hublet
