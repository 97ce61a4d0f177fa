#pragma once
// The viewport display callback the port registers for the plug-in. SDK-facing.
#include <max.h>

#include "host/host.h"

// The host calls Display for every viewport it redraws; we pass the view on to the handler
// that the port stored here before registering the callback.
class HubletDisplayCallback final : public ViewportDisplayCallback {
 public:
  void SetHandler(hublet::DisplayHandler& handler) { handler_ = &handler; }
  // The callback outlives the plug-in object: without a handler a redraw does nothing.
  void ClearHandler(hublet::DisplayHandler& handler) {
    if (handler_ == &handler) handler_ = nullptr;
  }

  void Display(TimeValue t, ViewExp* vpt, int flags) override;
  void GetViewportRect(TimeValue t, ViewExp* vpt, Rect* rect) override;
  // We draw nothing, so the background plane is enough.
  BOOL Foreground() override { return FALSE; }

 private:
  hublet::DisplayHandler* handler_ = nullptr;
};
