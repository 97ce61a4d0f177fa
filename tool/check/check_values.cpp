#include <utility>
#include <vector>

#include "platform/wide_text.h"
#include "tool/check/check_jobs.h"

namespace hublet {
namespace tool {
namespace {

std::string FieldName(const PreferenceKey& key, int viewIndex) {
  std::string field = key.field;
  if (viewIndex >= 0) field += "[" + std::to_string(viewIndex) + "]";
  return field;
}

}  // namespace

// The start-up switches once, then each stage's keys, as the plug-in reads them.
void ReadValues(CheckContext& context, ProfileReader& reader) {
  // Every lookup below, and the checker's, in one walk of the file.
  std::vector<std::pair<std::wstring, std::wstring>> lookups;
  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    for (int i = 0; i < (key.kind == KeyKind::PerView ? kStoredViewCount : 1); ++i)
      lookups.emplace_back(key.section, KeyName(key, i));
  }
  context.document.Prepare(lookups);

  HubletSettings& s = context.settings;
  LoadSettings(reader, s);
  for (ReadWhen stage : {ReadWhen::LayoutStage, ReadWhen::GammaStage, ReadWhen::FrameRateStage})
    ReadPreferenceKeys(reader, s, stage);
  CheckReport& report = context.report;
  report.layoutStage = s.useViewLayout != 0;
  report.gammaStage = s.useGamma != 0;
  report.frameRateStage = s.useFrameRate != 0;

  for (std::size_t k = 0; k < kPreferenceKeyCount; ++k) {
    const PreferenceKey& key = kPreferenceKeys[k];
    const bool perView = key.kind == KeyKind::PerView;
    for (int i = 0; i < (perView ? kStoredViewCount : 1); ++i) {
      const std::wstring name = KeyName(key, perView ? i : 0);
      SettingValue value{&key, perView ? i : -1, WideToUtf8(key.section), WideToUtf8(name),
                         FieldName(key, perView ? i : -1), false, 0, 0.0f, std::string(), 0};
      switch (key.kind) {
        case KeyKind::Integer:
          value.intValue = s.*key.intField;
          break;
        case KeyKind::PerView:
          value.intValue = (s.*key.viewField)[i];
          break;
        case KeyKind::GammaText:
          value.isText = true;
          value.floatValue = s.*key.floatField;
          value.text = WideToUtf8(reader.ReadText(key.section, name, key.defaultText));
          break;
      }
      const IniFound found = context.document.Find(key.section, name);
      if (found.hasEquals) value.line = found.line;
      report.settings.push_back(value);
    }
  }
}

}  // namespace tool
}  // namespace hublet
