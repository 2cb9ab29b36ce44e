// What the tools know of each zoom override mode, in one table for all of them.
#pragma once

#include <string_view>
#include <vector>

#include "ZoomOverrideTypes.h"

namespace scenario {

/// What brings the override of a mode, beside the request itself.
enum class OverrideSource {
    None,
    Published,  ///< the customer's newest entry, which the module reads in each query
    Setting,
    Metadata,
};

struct ModeTraits {
    std::string_view name;  ///< in scenarios, on command lines and in reports
    OverrideSource source;
    bool takesSensors;       ///< configSensorInfo and configFspInfo count
    bool answersP2;          ///< a P2 query does not stop the process
    bool isP2InActiveArray;  ///< the P2 crops are in the active array; otherwise in the TG domain
};

/// An empty name for a value that is no mode.
constexpr ModeTraits traitsOf(NSCam::Feature::ZoomOverrideMode mode) {
    using NSCam::Feature::ZoomOverrideMode;
    switch (mode) {
        case ZoomOverrideMode::None:
            return {.name = "None",
                    .source = OverrideSource::None,
                    .takesSensors = false,
                    .answersP2 = true,
                    .isP2InActiveArray = false};
        case ZoomOverrideMode::ExternalAPI:
            return {.name = "ExternalAPI",
                    .source = OverrideSource::Published,
                    .takesSensors = true,
                    .answersP2 = true,
                    .isP2InActiveArray = true};
        case ZoomOverrideMode::ByRequest:
            return {.name = "ByRequest",
                    .source = OverrideSource::Setting,
                    .takesSensors = false,
                    .answersP2 = true,
                    .isP2InActiveArray = false};
        case ZoomOverrideMode::InstantRequest:
            return {.name = "InstantRequest",
                    .source = OverrideSource::Metadata,
                    .takesSensors = false,
                    .answersP2 = false,
                    .isP2InActiveArray = false};
    }
    return {};
}

/// Empty for a value that is no mode.
constexpr std::string_view nameOf(NSCam::Feature::ZoomOverrideMode mode) {
    return traitsOf(mode).name;
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

/// The modes that have a strategy.
inline std::vector<NSCam::Feature::ZoomOverrideMode> overridingModes() {
    auto modes = allModes();
    modes.erase(modes.begin());  // None
    return modes;
}

}  // namespace scenario
