// The examples that explain themselves line by line, one for each zoom override mode.
#pragma once

#include "ZoomOverrideTypes.h"

namespace zoomreplay {

/// Empty for None. FirstScenarios.cpp.in becomes its definition when the tool is built.
char const* firstScenarioOf(NSCam::Feature::ZoomOverrideMode mode);

}  // namespace zoomreplay
