// Writes need records the way result files and scenarios have them.
#pragma once

#include <string>

#include "ZoomOverrideTypes.h"

namespace scenario {

// appendNeed appends ", "need": {...}": the header, and what else the stage's record holds.
void appendNeed(std::string& out, NSCam::Feature::ZoomOverrideP1Need const& need);
void appendNeed(std::string& out, NSCam::Feature::ZoomOverrideP2Need const& need);
void appendNeed(std::string& out, NSCam::Feature::ZoomOverride3ANeed const& need);

}  // namespace scenario
