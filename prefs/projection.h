#pragma once
// Keeps viewports in the projection the user wants, checked on every redraw: an
// orthographic user view becomes a camera view (forcePersp), a perspective user view an
// orthographic one (forceOrtho).
#include "host/host.h"
#include "settings/settings.h"

namespace hublet {

// How far the new camera stands back from the view it replaces, in world units.
constexpr float cameraBackOff = 200.0f;

// The camera that replaces an orthographic user view, and its redraw.
void ConvertToCameraView(Host& host, View& view);

// Runs inside every viewport redraw: with both switches off it costs two comparisons and
// never allocates, so it is inline and asks the view nothing unless a switch is 1.
inline void EnforceProjection(Host& host, const HubletSettings& settings, View* view) {
  if (view == nullptr || (settings.forcePersp != 1 && settings.forceOrtho != 1)) return;
  // One type serves both rules: a view the first rule converts is no longer a type the
  // second acts on.
  const int type = view->Type();
  if (settings.forcePersp == 1 && type == host::kViewIsoUser) ConvertToCameraView(host, *view);
  if (settings.forceOrtho == 1 && type == host::kViewPerspUser) {
    // The host's view command acts on the active viewport.
    host.ExecuteCommand(host::kCommandIsoUser);
    host.ForceCompleteRedraw(true);
  }
}

}  // namespace hublet
