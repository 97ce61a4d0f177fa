#pragma once
// One 3ds Max viewport seen through the port's View. SDK-facing.
#include <max.h>

#include "host/host.h"

namespace hublet {
namespace max_binding {

// Holds the viewport only: nothing reaches the host until a member is called, so building
// one inside a redraw costs nothing when no rule needs the view.
class MaxView final : public View {
 public:
  // Unbound until Rebind, which only stores the viewport.
  MaxView() = default;
  void Rebind(ViewExp& view) { view_ = &view; }

  int Type() override;
  bool IsPerspective() override;
  Matrix43 AffineTransform() override;
  void SetAffineTransform(const Matrix43& transform) override;
  bool HasShadingExtension() override;
  void SetShadingStyle(int style) override;
  void SetViewCamera(NodeRef camera) override;

 private:
  ViewExp* view_ = nullptr;
};

}  // namespace max_binding
}  // namespace hublet
