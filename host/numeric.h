#pragma once
#include <cmath>
#include <limits>

namespace hublet {

// Narrows a double to a float the way the hardware does, but without the undefined
// behaviour C++ gives an out-of-range conversion: too large becomes infinity.
inline float NarrowToFloat(double value) {
  if (std::isnan(value)) return std::numeric_limits<float>::quiet_NaN();
  const double max = std::numeric_limits<float>::max();
  if (value > max) return std::numeric_limits<float>::infinity();
  if (value < -max) return -std::numeric_limits<float>::infinity();
  return static_cast<float>(value);
}

}  // namespace hublet
