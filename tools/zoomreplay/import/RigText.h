// Writes a rig: the scenario lines that describe a phone's sensors.
#pragma once

#include <string>

#include "CameraChoice.h"
#include "OpenSessions.h"

namespace zoomreplay {

struct RigOptions {
    bool isBinned = false;  ///< give each sensor a second mode, which joins two by two pixels
    AngleSource angles = AngleSource::PhysicalSize;
};

/// A sensor line for each usable camera of stock, and the configuration of group, with comments.
///
/// Sensors have their camera's id, where that is a number that stream ids have room for; the others
/// get the lowest numbers that no camera has. Windows and arrays keep the origin that the phone
/// reports, so that crops are in the coordinates of the sensor itself.
/// @param session of the group's camera while it was open; null: none. Its streams become a
///     setRunTimeCropNeedData line of request 0.
/// @throws UserError there are more cameras than numbers.
std::string rigText(CameraStock const& stock, SensorGroup const& group, OpenSession const* session,
                    RigOptions const& options);

}  // namespace zoomreplay
