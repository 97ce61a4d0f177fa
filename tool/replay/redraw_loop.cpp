#include "tool/replay/redraw_loop.h"

#include <cstring>

namespace hublet {
namespace tool {

// Transforms compare bit for bit, so that a view whose matrix holds a NaN is found again.
bool ViewportsState::operator==(const ViewportsState& other) const {
  if (activeViewport != other.activeViewport) return false;
  for (int i = 0; i < SimHost::kViewportCount; ++i)
    if (types[i] != other.types[i] || std::memcmp(transforms[i].m, other.transforms[i].m, sizeof transforms[i].m) != 0)
      return false;
  return true;
}

ViewportsState ViewportsOf(SimHost& host) {
  ViewportsState state{};
  state.activeViewport = host.activeViewport;
  for (int i = 0; i < SimHost::kViewportCount; ++i) {
    state.types[i] = host.viewport(i).type;
    state.transforms[i] = host.viewport(i).transform;
  }
  return state;
}

bool RedrawLoopFinder::Repeats(const ViewportsState& now, int number, int& earlier) {
  if (kept_ && now == keptState_) {
    earlier = keptAt_;
    return true;
  }
  if (!kept_ || sinceKept_ == distance_) {
    if (kept_) distance_ *= 2;
    kept_ = true;
    keptState_ = now;
    keptAt_ = number;
    sinceKept_ = 0;
  }
  ++sinceKept_;
  return false;
}

}  // namespace tool
}  // namespace hublet
