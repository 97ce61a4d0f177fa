#pragma once
// The preference pass run at start-up, after a new scene and after a reset: viewport
// layout and views, gammas, frame rate, each stage behind its own switch.
#include "host/matrix.h"

namespace hublet {

struct PluginState;

// The view every perspective viewport the pass sets up is given.
extern const Matrix43 homeViewMatrix;

// Runs the layout, gamma and frame-rate stages, in that order, each when its switch is
// non-zero, reading their keys afresh from the preference file.
void ApplyViewPreferences(PluginState& state);

}  // namespace hublet
