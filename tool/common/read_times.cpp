#include "tool/common/read_times.h"

namespace hublet {
namespace tool {

const char* ReadWhenId(ReadWhen when) {
  switch (when) {
    case ReadWhen::AtStart: return "start";
    case ReadWhen::LayoutStage: return "layout";
    case ReadWhen::GammaStage: return "gamma";
    case ReadWhen::FrameRateStage: return "frame-rate";
  }
  return "start";
}

}  // namespace tool
}  // namespace hublet
