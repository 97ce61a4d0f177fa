#include "host/max/max_view.h"

#include <Graphics/IViewportViewSetting.h>
#include <inode.h>

#include "host/max/conversions.h"

namespace hublet {
namespace max_binding {
namespace {

// IVIEWPORT_SETTINGS_INTERFACE_ID: served by Nitrous views only, null elsewhere.
MaxSDK::Graphics::IViewportViewSetting* ShadingSettings(ViewExp& view) {
  return static_cast<MaxSDK::Graphics::IViewportViewSetting*>(
      view.GetInterface(ToInterfaceId(host::kViewShadingInterfaceId)));
}

}  // namespace

int MaxView::Type() { return view_->GetViewType(); }

bool MaxView::IsPerspective() { return view_->IsPerspView() != FALSE; }

Matrix43 MaxView::AffineTransform() {
  Matrix3 transform;
  view_->GetAffineTM(transform);
  return ToMatrix43(transform);
}

void MaxView::SetAffineTransform(const Matrix43& transform) { view_->SetAffineTM(ToMatrix3(transform)); }

bool MaxView::HasShadingExtension() { return ShadingSettings(*view_) != nullptr; }

void MaxView::SetShadingStyle(int style) {
  MaxSDK::Graphics::IViewportViewSetting* settings = ShadingSettings(*view_);
  if (settings != nullptr) settings->SetViewportVisualStyle(static_cast<MaxSDK::Graphics::VisualStyle>(style));
}

void MaxView::SetViewCamera(NodeRef camera) { view_->SetViewCamera(static_cast<INode*>(camera.handle)); }

}  // namespace max_binding
}  // namespace hublet
