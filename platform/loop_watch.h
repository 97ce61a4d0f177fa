#pragma once
// Notices a chain that comes back to a link it has passed, in constant memory (Brent's
// method): it keeps one link, moved forward each time the distance to it has doubled, so
// a loop is met within about twice the links that lead once round it. A chain in a file
// can be as long as the file claims; what watching it costs must not be.
#include <cstdint>

namespace hublet {

class LoopWatch {
 public:
  // Whether the chain's next link is one it has passed; call once for every link, in order.
  bool Returns(std::uint32_t next) {
    if (marked_ && next == mark_) return true;
    if (++sinceMark_ == span_) {
      mark_ = next;
      marked_ = true;
      sinceMark_ = 0;
      span_ *= 2;
    }
    return false;
  }

 private:
  bool marked_ = false;
  std::uint32_t mark_ = 0;
  std::uint64_t sinceMark_ = 0;
  std::uint64_t span_ = 1;
};

}  // namespace hublet
