#pragma once
// Followed redraws that would never end. The display callback decides from each view's
// type and transform and from which viewport is active (view commands act there); nothing
// else changes while the replay follows redraws. So when the viewports are again as they
// were before an earlier followed redraw, the plug-in goes round the same requests forever.
#include "host/sim/sim_host.h"

namespace hublet {
namespace tool {

struct ViewportsState {
  int activeViewport;
  int types[SimHost::kViewportCount];
  Matrix43 transforms[SimHost::kViewportCount];

  bool operator==(const ViewportsState& other) const;
};

ViewportsState ViewportsOf(SimHost& host);

// Finds a followed redraw whose viewports repeat an earlier one's. It keeps one earlier
// state, taken afresh at doubling distances (Brent's method): a loop is found within three
// times the redraws before it plus its length, in constant memory, however long the
// redraws are followed.
class RedrawLoopFinder {
 public:
  // Whether the viewports before followed redraw `number` (1, 2, ... in turn) are as
  // before an earlier one, which `earlier` then gives.
  bool Repeats(const ViewportsState& now, int number, int& earlier);

 private:
  bool kept_ = false;
  ViewportsState keptState_{};
  int keptAt_ = 0;
  long long distance_ = 1;  // redraws between two renewals of the kept state
  long long sinceKept_ = 0;
};

}  // namespace tool
}  // namespace hublet
