// Which of a phone's cameras make a rig, and which of them is the master.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CameraOptics.h"
#include "CameraStatics.h"

namespace zoomreplay {

/// Refer to the dump's cameras, which outlive them.
using Cameras = std::vector<CameraStatics const*>;

/// A dump's cameras by what they are good for.
struct CameraStock {
    Cameras all;
    Cameras chosen;  ///< by the user, with the physical cameras of logical ones
    Cameras usable;  ///< of the chosen ones, the sensors whose optics are known
    std::vector<std::string> complaints;  ///< about chosen cameras that lack something, or that
                                          ///< cannot be as the phone says
};

/// @param chosenIds of cameras; a logical one stands for its physical ones too. Empty: all.
/// @param source what each sensor's angles are taken from.
/// @throws UserError the dump lacks a chosen camera; without the dump's name.
CameraStock sortCameras(std::vector<CameraStatics> const& cameras,
                        std::vector<std::string> const& chosenIds, AngleSource source);

/// The sensors that an application opens together.
struct SensorGroup {
    std::string cameraId;      ///< the camera that an application opens
    Cameras sensors;           ///< the master first
    std::string masterReason;  ///< why it is the master
};

/// What the user chose among, or the phone's main camera: the sensors of the first logical camera
/// that faces back, of the first logical one, or else the first sensor that faces back.
/// @param stock with at least one usable camera.
/// @param areAllWanted group all usable cameras instead.
/// @param masterId chooses the master; empty: the logical camera's main sensor, which is the first
///     one with its focal length and physical size.
/// @throws UserError nobody in the group has masterId, the main sensor is not known, or cameras
/// that
///     belong to the group are not usable, so that the rest would pass for the phone; without the
///     dump's name.
SensorGroup groupSensors(CameraStock const& stock, bool areAllWanted,
                         std::optional<std::string> const& masterId);

}  // namespace zoomreplay
