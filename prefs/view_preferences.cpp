#include "prefs/view_preferences.h"

#include <algorithm>
#include <memory>

#include "settings/plugin_state.h"
#include "settings/preference_keys.h"

namespace hublet {

const Matrix43 homeViewMatrix = {{{0.707107f, 0.353553f, -0.612372f},
                                  {-0.707107f, 0.353553f, -0.612372f},
                                  {0.0f, 0.866025f, 0.5f},
                                  {0.0f, 0.0f, -250.0f}}};

namespace {

// Shading styles used when the file's own are not applied.
constexpr int kPerspectiveDefaultStyle = 0;
constexpr int kOtherDefaultStyle = 5;

void SetUpViewport(Host& host, const HubletSettings& s, int index) {
  host.SetActiveViewport(index);
  // A stored type without a view command leaves the viewport's view as it is; the rest
  // of its setup still follows the view it has.
  const int type = s.viewType[index];
  if (type >= 0 && type < host::kViewTypeCount) host.ExecuteCommand(host::viewTypeCommand[type]);

  View& view = host.ActiveView();
  const bool hasShading = view.HasShadingExtension();
  if (s.useDisplayModes != 0) {
    if (hasShading) view.SetShadingStyle(s.viewStyle[index]);
    host.SetActiveViewportEdgedFaces(s.viewEdges[index]);
  } else {
    if (hasShading)
      view.SetShadingStyle(view.IsPerspective() ? kPerspectiveDefaultStyle : kOtherDefaultStyle);
    host.SetActiveViewportEdgedFaces(0);
  }
  if (view.IsPerspective()) view.SetAffineTransform(homeViewMatrix);
}

void ApplyLayout(PluginState& state, ProfileReader& reader) {
  HubletSettings& s = state.settings;
  ReadPreferenceKeys(reader, s, ReadWhen::LayoutStage);
  Host& host = state.host;
  host.SetViewportLayout(s.viewLayout);
  host.SetExpertMode(s.expertMode);
  host.SetCommandPanelOpen(s.commandPanel);
  // Only four viewports have stored keys; a larger count sets up those four.
  const int count = std::min(s.viewCount, kStoredViewCount);
  for (int i = 0; i < count; ++i) SetUpViewport(host, s, i);
}

bool IsGammaTarget(ClassId renderer) {
  for (const ClassId& target : host::rendererGammaTargets)
    if (target == renderer) return true;
  return false;
}

void ApplyGamma(PluginState& state, ProfileReader& reader) {
  HubletSettings& s = state.settings;
  ReadPreferenceKeys(reader, s, ReadWhen::GammaStage);
  Host& host = state.host;
  host.SetDisplayGamma(s.displayGamma);
  host.SetFileInGamma(s.fileInGamma);
  host.SetFileOutGamma(s.fileOutGamma);
  const Lookup<ClassId> renderer = host.CurrentRendererClass(true);
  if (renderer.found && IsGammaTarget(renderer.value))
    host.SetRendererFloat(host::kRendererGammaBlock, host::kRendererGammaParam, state.sceneTime,
                          s.rendererGamma, 0);
}

void ApplyFrameRate(PluginState& state, ProfileReader& reader) {
  ReadPreferenceKeys(reader, state.settings, ReadWhen::FrameRateStage);
  state.host.SetFrameRate(state.settings.frameRate);
}

}  // namespace

void ApplyViewPreferences(PluginState& state) {
  const HubletSettings& s = state.settings;
  const std::wstring path = PreferenceFilePath(state.host);
  if (s.useViewLayout == 0 && s.useGamma == 0 && s.useFrameRate == 0) return;
  // One reader serves the whole pass, so the file is read once.
  const std::unique_ptr<ProfileReader> reader = state.system.OpenProfile(path);
  if (s.useViewLayout != 0) ApplyLayout(state, *reader);
  if (s.useGamma != 0) ApplyGamma(state, *reader);
  if (s.useFrameRate != 0) ApplyFrameRate(state, *reader);
}

}  // namespace hublet
