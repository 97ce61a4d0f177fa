#include "tool/check/keys_reference.h"

#include <vector>

#include "host/host_constants.h"
#include "platform/wide_text.h"
#include "settings/preference_keys.h"
#include "tool/check/report.h"
#include "tool/common/host_codes.h"
#include "tool/common/read_times.h"

namespace hublet {
namespace tool {
namespace {

std::string Utf8(const std::wstring& text) { return WideToUtf8(text); }

const PreferenceKey& RowOf(int HubletSettings::*field) {
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k)
    if (kPreferenceKeys[k].intField == field) return kPreferenceKeys[k];
  return kPreferenceKeys[0];
}

const PreferenceKey& RowOf(int (HubletSettings::*field)[kStoredViewCount]) {
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k)
    if (kPreferenceKeys[k].viewField == field) return kPreferenceKeys[k];
  return kPreferenceKeys[0];
}

struct Row {
  std::string section, key, field, defaultValue, read, test, effect;
};

std::string Last(int count) { return std::to_string(count - 1); }

std::vector<Row> Rows() {
  std::vector<Row> rows;
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    Row row;
    row.section = Utf8(key.section);
    row.key = Utf8(KeyName(key, 0));
    row.field = key.field;
    if (key.kind == KeyKind::PerView) {
      row.key += " to " + Utf8(KeyName(key, kStoredViewCount - 1));
      row.field += "[0.." + Last(kStoredViewCount) + "]";
    }
    row.defaultValue = key.kind == KeyKind::GammaText ? "\"" + Utf8(key.defaultText) + "\"" : std::to_string(key.defaultInt);
    const PreferenceKey* gate = StageSwitch(key.when);
    row.read = gate == nullptr ? "at start"
                               : std::string("every pass, ") + ReadWhenId(key.when) + " stage (" + Utf8(gate->name) + ")";
    switch (key.test) {
      case SwitchTest::NotASwitch: row.test = "value"; break;
      case SwitchTest::ExactlyOne: row.test = "exactly 1"; break;
      case SwitchTest::NonZero: row.test = "non-zero"; break;
      case SwitchTest::HeldOnly: row.test = "held only"; break;
    }
    row.effect = key.effect;
    rows.push_back(row);
  }
  return rows;
}

// The rules of the reader and the pass that the table cannot say by itself.
std::vector<std::string> Notes() {
  const std::string count = Utf8(RowOf(&HubletSettings::viewCount).name);
  const PreferenceKey& type = RowOf(&HubletSettings::viewType);
  const std::string stored = std::to_string(kStoredViewCount);
  const std::string types = "0 to " + Last(host::kViewTypeCount);
  return {
      "Sections and keys are matched without regard to ASCII case. Only the first header of a section "
      "name is read, and within it the first line of a key.",
      "The switches are read once, when the plug-in starts; changing them needs a restart or a call on "
      "the preference interface. The preference pass runs at start-up, after a new scene and after a "
      "reset. Its layout, gamma and frame-rate stages each run only when their switch is non-zero, and "
      "each reads its keys afresh, so an edit of those takes effect at the next pass.",
      "\"exactly 1\": the plug-in acts only on the value 1, so 2 is off. \"non-zero\": any value but 0 is on. "
      "\"held only\": kept for companion tools; nothing in the plug-in acts on it.",
      "Whole numbers are read as the Windows profile API reads them: the number at the start of the "
      "text (\"25 fps\" reads 25, \"yes\" reads 0); an empty value or a missing key gives the default.",
      "A gamma text is converted as a C floating-point number: text that does not start with a number "
      "applies 0.0, a missing key applies the default.",
      count + " above " + stored + " sets up only the " + stored + " viewports that have stored keys; " + count +
          " of 0 or below touches no viewport (layout, expert mode and command panel are still set).",
      "A stored view type (" + Utf8(KeyName(type, 0)) + " to " + Utf8(KeyName(type, kStoredViewCount - 1)) +
          ") outside " + types + " runs no view command, and the viewport keeps its current view; the rest of its setup "
          "(shading, edged faces, and the home matrix for a perspective view) follows the view it has.",
  };
}

const HostCodeSet* const kCodeSets[] = {&kViewTypes, &kShadingStyles, &kViewportLayouts};

std::string CodeText(int code, const HostCodeSet& set) {
  if (&set != &kViewportLayouts) return std::to_string(code);
  const char* const hex = "0123456789abcdef";
  return std::to_string(code) + " (0x" + hex[(code >> 4) & 0xF] + hex[code & 0xF] + ")";
}

}  // namespace

std::string KeysMarkdown() {
  std::string out =
      "| Section | Key | Field | Default | Read | Switch | Effect |\n"
      "|---|---|---|---|---|---|---|\n";
  for (const Row& row : Rows()) {
    out += "| " + row.section + " | `" + row.key + "` | `" + row.field + "` | " + row.defaultValue + " | " + row.read +
           " | " + row.test + " | " + row.effect + " |\n";
  }
  out += "\n";
  for (const std::string& note : Notes()) out += "- " + note + "\n";
  for (const HostCodeSet* set : kCodeSets) {
    out += "\nThe host's " + std::string(set->title) + ":\n\n| Code | Meaning |\n|---|---|\n";
    for (std::size_t i = 0; i < set->count; ++i)
      out += "| " + CodeText(set->codes[i].code, *set) + " | " + set->codes[i].name + " |\n";
  }
  return out;
}

std::string KeysText() {
  std::string out;
  for (const Row& row : Rows()) {
    out += "[" + row.section + "] " + row.key + "\n";
    out += "  field " + row.field + ", default " + row.defaultValue + ", read " + row.read + ", " + row.test + "\n";
    out += "  " + row.effect + "\n";
  }
  out += "\n";
  for (const std::string& note : Notes()) out += "* " + note + "\n";
  for (const HostCodeSet* set : kCodeSets) {
    out += "\nThe host's " + std::string(set->title) + ":\n";
    for (std::size_t i = 0; i < set->count; ++i)
      out += "  " + CodeText(set->codes[i].code, *set) + "  " + set->codes[i].name + "\n";
  }
  return out;
}

}  // namespace tool
}  // namespace hublet
