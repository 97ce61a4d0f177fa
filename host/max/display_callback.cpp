#include "host/max/display_callback.h"

#include "host/max/max_view.h"

void HubletDisplayCallback::Display(TimeValue t, ViewExp* vpt, int /*flags*/) {
  if (handler_ == nullptr) return;
  // Unbound unless the host gave a view; the adapter calls the host only when used.
  hublet::max_binding::MaxView view;
  if (vpt != nullptr) view.Rebind(*vpt);
  handler_->OnDisplay(t, vpt != nullptr ? &view : nullptr);
}

void HubletDisplayCallback::GetViewportRect(TimeValue /*t*/, ViewExp* /*vpt*/, Rect* rect) {
  if (rect != nullptr) rect->SetEmpty();
}
