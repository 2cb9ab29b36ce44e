// The cameras that the cases work on: five real sensors in a preview mode each, repeated when a
// case wants more, with as many streams as it wants.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "HwTransHelper.h"
#include "IMetadata.h"
#include "IZoomOverrideMgr.h"

namespace Bench {

using NSCam::MRect;
using NSCam::MSize;

inline constexpr uint32_t kSensorMode = 1;
inline constexpr uint32_t kSensorKinds = 5;

/// The ratios at which all cases override: below the application's for P1, above it for P2.
inline constexpr float kOverrideRatio = 1.5F;
inline constexpr float kAboveOverride = 2.0F;
inline constexpr float kBelowOverride = 1.2F;

struct Rig {
    uint32_t sensors = 0;
    NSCam::Feature::ZoomOverrideSensorInfoConfig sensorInfo;
    NSCam::Feature::ZoomOverrideSensorBehaviorInfoConfig ports;  ///< each sensor has R1 and R3
    NSCam::Feature::RunTimeCropNeedData data;

    /// Output sizes by sensor id, for the floors: the module asks for each of them once.
    std::vector<MSize> outputSizes;

    /// Instant request: a custom crop for all streams but the internal ones, which follow.
    NSCam::IMetadata metadata;
    std::unordered_map<uint32_t, uint64_t> streamIds;

    /// By request: the crops of each sensor, for the request after the last.
    std::shared_ptr<NSCam::Feature::ZoomOverrideSetting> setting;
};

/// Fills the platform's sensor table too, and switches all log lines off. Streams come in groups of
/// four on one sensor: three with crops, and an internal one that follows the first.
Rig makeRig(uint32_t sensors, uint32_t streams);

/// The manager, initialised for a mode and configured for the rig.
std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> startManager(
    NSCam::Feature::ZoomOverrideMode mode, Rig const& rig);

/// Deposits the rig's record for request 0, and lets the requests up to count - 1 repeat it: so
/// the module reads one record for all of them, as the floors do.
void depositRequests(NSCam::Feature::IZoomOverrideMgr& mgr, Rig const& rig, int count);

}  // namespace Bench
