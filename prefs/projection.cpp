#include "prefs/projection.h"

namespace hublet {

void ConvertToCameraView(Host& host, View& view) {
  const Matrix43 viewMatrix = view.AffineTransform();
  // Step back along the view's z axis: only the translation's z changes.
  Matrix43 backOff{};
  backOff.m[3][2] = cameraBackOff;
  const Matrix43 backedOff = viewMatrix - backOff;
  const Matrix43 cameraTransform = Inverse(backedOff);

  const NodeRef node = host.CreateObjectNode(host.CreateCameraObject(host::kTargetedCamera));
  host.SetNodeTransform(node, host.CurrentTime(), cameraTransform);
  view.SetViewCamera(node);
  host.SelectNode(node, 1);
  view.SetAffineTransform(backedOff);
  host.ForceCompleteRedraw(true);
}

}  // namespace hublet
