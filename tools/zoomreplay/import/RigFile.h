// A rig as import-watch needs it, out of a scenario file that import-rig or a person wrote.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "OpenSessions.h"
#include "ZoomOverrideTypes.h"
#include "base/LineReader.h"

namespace zoomreplay {

/// A configured sensor and its mode with the lowest number.
struct RigSensor {
    uint32_t id = 0;  ///< 0 to 255
    uint32_t mode = 0;
    NSCam::MSize modeSize;
    NSCam::Feature::ZoomOverrideSensorInfo info;
};

struct PhoneRig {
    std::vector<std::string> platformLines;  ///< to be replayed before initialize
    std::vector<std::string> configLines;    ///< to be replayed after it
    std::vector<RigSensor> sensors;          ///< the master first; at least one
    bool hasPorts = false;                   ///< configLines say which ports the sensors have
    std::optional<StreamTables> streams;     ///< of each request, where they are known
};

/// @throws UserError the file cannot be read, has lines that do not belong into a rig, or does not
///     describe the sensors that it configures.
PhoneRig readRig(LineReader& lines);

}  // namespace zoomreplay
