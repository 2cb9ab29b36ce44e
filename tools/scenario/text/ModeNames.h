// The names of the zoom override modes, in scenarios, on command lines and in reports.
#pragma once

#include <string_view>
#include <vector>

#include "ZoomOverrideTypes.h"

namespace scenario {

/// Empty for a value that is no mode.
constexpr std::string_view nameOf(NSCam::Feature::ZoomOverrideMode mode) {
    using NSCam::Feature::ZoomOverrideMode;
    switch (mode) {
        case ZoomOverrideMode::None:
            return "None";
        case ZoomOverrideMode::ExternalAPI:
            return "ExternalAPI";
        case ZoomOverrideMode::ByRequest:
            return "ByRequest";
        case ZoomOverrideMode::InstantRequest:
            return "InstantRequest";
    }
    return {};
}

/// All modes, whose values follow each other from 0.
inline std::vector<NSCam::Feature::ZoomOverrideMode> allModes() {
    using NSCam::Feature::ZoomOverrideMode;
    std::vector<ZoomOverrideMode> modes;
    for (auto mode = ZoomOverrideMode{0}; !nameOf(mode).empty();
         mode = ZoomOverrideMode{static_cast<int32_t>(modes.size())}) {
        modes.push_back(mode);
    }
    return modes;
}

}  // namespace scenario
