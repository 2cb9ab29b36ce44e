// Which of a phone's cameras make a rig, and which of them is the master.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CameraDump.h"

namespace zoomreplay {

/// Refer to the dump's cameras, which outlive them.
using Cameras = std::vector<CameraStatics const*>;

/// A dump's cameras by what they are good for.
struct CameraStock {
    Cameras all;
    Cameras chosen;  ///< by the user, with the physical cameras of logical ones
    Cameras usable;  ///< of the chosen ones, the sensors whose optics are known
    std::vector<std::string> complaints;  ///< one for each chosen camera that lacks something
};

/// @param chosenIds of cameras; a logical one stands for its physical ones too. Empty: all.
/// @throws UserError the dump lacks a chosen camera; without the dump's name.
CameraStock sortCameras(std::vector<CameraStatics> const& cameras,
                        std::vector<std::string> const& chosenIds);

/// The sensors that an application opens together.
struct SensorGroup {
    Cameras sensors;           ///< the master first
    std::string masterReason;  ///< why it is the master
};

/// The first logical camera's sensors, or else the first sensor alone.
/// @param stock with at least one usable camera.
/// @param areAllWanted group all usable cameras instead.
/// @param masterId chooses the master; empty: the logical camera's main sensor, which is the first
///     one with its focal length and physical size.
/// @throws UserError nobody in the group has masterId, or the main sensor is not known; without the
///     dump's name.
SensorGroup groupSensors(CameraStock const& stock, bool areAllWanted,
                         std::optional<std::string> const& masterId);

}  // namespace zoomreplay
