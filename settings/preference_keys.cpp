#include "settings/preference_keys.h"

#include <cstdint>

namespace hublet {
namespace {

constexpr const wchar_t* kFlint = L"FLINT";
constexpr const wchar_t* kMyView = L"MYVIEW";
constexpr const wchar_t* kDefaultGamma = L"2.2";

constexpr PreferenceKey Switch(const wchar_t* section, const wchar_t* name, const char* field,
                               int HubletSettings::*member, SwitchTest test, int defaultValue,
                               const char* effect) {
  return {section, name, field, KeyKind::Integer, ReadWhen::AtStart, test,
          member,  nullptr, nullptr, defaultValue, nullptr, effect};
}

constexpr PreferenceKey Value(const wchar_t* name, const char* field, int HubletSettings::*member,
                              ReadWhen when, const char* effect) {
  return {kMyView, name, field, KeyKind::Integer, when, SwitchTest::NotASwitch,
          member,  nullptr, nullptr, 0, nullptr, effect};
}

constexpr PreferenceKey PerView(const wchar_t* pattern, const char* field,
                                int (HubletSettings::*member)[kStoredViewCount], const char* effect) {
  return {kMyView, pattern, field, KeyKind::PerView, ReadWhen::LayoutStage, SwitchTest::NotASwitch,
          nullptr, member,  nullptr, 0, nullptr, effect};
}

constexpr PreferenceKey Gamma(const wchar_t* name, const char* field, float HubletSettings::*member,
                              const char* effect) {
  return {kMyView, name, field, KeyKind::GammaText, ReadWhen::GammaStage, SwitchTest::NotASwitch,
          nullptr, nullptr, member, 0, kDefaultGamma, effect};
}

using S = HubletSettings;

}  // namespace

const PreferenceKey kPreferenceKeys[] = {
    Switch(kFlint, L"FORCEPERSP", "forcePersp", &S::forcePersp, SwitchTest::ExactlyOne, 0,
           "1 turns every orthographic user view into a camera view when it is redrawn"),
    Switch(kFlint, L"FORCEORTHO", "forceOrtho", &S::forceOrtho, SwitchTest::ExactlyOne, 0,
           "1 turns every perspective user view into an orthographic user view when it is redrawn"),
    Switch(kFlint, L"EMPTYMTLO", "emptyMtlOnOpen", &S::emptyMtlOnOpen, SwitchTest::ExactlyOne, 0,
           "1 clears the material editor's slots after a scene is opened"),
    Switch(kFlint, L"EMPTYMTLS", "emptyMtlOnSave", &S::emptyMtlOnSave, SwitchTest::HeldOnly, 0,
           "kept for companion tools; no action in the plug-in"),
    Switch(kFlint, L"SHADEDOPEN", "shadedOnOpen", &S::shadedOnOpen, SwitchTest::HeldOnly, 1,
           "kept for companion tools; no action in the plug-in"),
    Switch(kFlint, L"OBJCOLOPEN", "objColourOnOpen", &S::objColourOnOpen, SwitchTest::HeldOnly, 1,
           "kept for companion tools; no action in the plug-in"),
    Switch(kFlint, L"BOXSAVE", "boxOnSave", &S::boxOnSave, SwitchTest::HeldOnly, 1,
           "kept for companion tools; no action in the plug-in"),
    Switch(kFlint, L"OBJCOLSAVE", "objColourOnSave", &S::objColourOnSave, SwitchTest::HeldOnly, 1,
           "kept for companion tools; no action in the plug-in"),
    Switch(kMyView, L"USE_VPL", "useViewLayout", &S::useViewLayout, SwitchTest::NonZero, 0,
           "non-zero applies the stored viewport layout and views at start-up, new and reset"),
    Switch(kMyView, L"USE_DR", "useDisplayModes", &S::useDisplayModes, SwitchTest::NonZero, 0,
           "non-zero applies each viewport's stored shading style and edged faces instead of "
           "the built-in defaults"),
    Switch(kMyView, L"USE_GAMMA", "useGamma", &S::useGamma, SwitchTest::NonZero, 0,
           "non-zero applies the stored gamma values"),
    Switch(kMyView, L"USE_FPS", "useFrameRate", &S::useFrameRate, SwitchTest::NonZero, 0,
           "non-zero applies the stored frame rate"),
    Value(L"VPLAYOUT", "viewLayout", &S::viewLayout, ReadWhen::LayoutStage,
          "the host's viewport-layout code"),
    Value(L"VPEXPERT", "expertMode", &S::expertMode, ReadWhen::LayoutStage, "expert mode off (0) or on"),
    Value(L"VPCMDPANEL", "commandPanel", &S::commandPanel, ReadWhen::LayoutStage,
          "command panel hidden (0) or shown"),
    Value(L"NUMVP", "viewCount", &S::viewCount, ReadWhen::LayoutStage,
          "how many viewports to set up; only 0 to 4 have stored keys"),
    PerView(L"VP%iTYPE", "viewType", &S::viewType,
            "the viewport's view type, 0 to 9 (left, right, top, bottom, front, back, user, "
            "perspective, camera, grid)"),
    PerView(L"VP%iSTYLE", "viewStyle", &S::viewStyle, "the viewport's shading style (with USE_DR)"),
    PerView(L"VP%iEDGES", "viewEdges", &S::viewEdges, "edged faces off (0) or on (with USE_DR)"),
    Gamma(L"GAMMA", "displayGamma", &S::displayGamma, "display gamma"),
    Gamma(L"GAMMAIN", "fileInGamma", &S::fileInGamma, "file input gamma"),
    Gamma(L"GAMMAOUT", "fileOutGamma", &S::fileOutGamma, "file output gamma"),
    Gamma(L"VRAYGAMMA", "rendererGamma", &S::rendererGamma, "the V-Ray renderer's gamma"),
    Value(L"FPS", "frameRate", &S::frameRate, ReadWhen::FrameRateStage,
          "frames per second; a missing key applies 0"),
};
const std::size_t kPreferenceKeyCount = sizeof(kPreferenceKeys) / sizeof(kPreferenceKeys[0]);

std::wstring KeyName(const PreferenceKey& key, int viewIndex) {
  std::wstring name = key.name;
  if (key.kind != KeyKind::PerView) return name;
  const std::size_t at = name.find(L"%i");
  return name.replace(at, 2, std::to_wstring(viewIndex));
}

void ReadPreferenceKeys(ProfileReader& reader, HubletSettings& settings, ReadWhen when) {
  for (const PreferenceKey& key : kPreferenceKeys) {
    if (key.when != when) continue;
    switch (key.kind) {
      case KeyKind::Integer:
        settings.*key.intField =
            static_cast<std::int32_t>(reader.ReadInt(key.section, key.name, key.defaultInt));
        break;
      case KeyKind::PerView:
        for (int i = 0; i < kStoredViewCount; ++i)
          (settings.*key.viewField)[i] = static_cast<std::int32_t>(
              reader.ReadInt(key.section, KeyName(key, i), key.defaultInt));
        break;
      case KeyKind::GammaText:
        settings.*key.floatField = ParseGamma(reader.ReadText(key.section, key.name, key.defaultText));
        break;
    }
  }
}

}  // namespace hublet
