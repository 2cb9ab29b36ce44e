// Writes a rig: the scenario lines that describe a phone's sensors.
#pragma once

#include <string>

#include "CameraChoice.h"

namespace zoomreplay {

/// A sensor line for each usable camera of stock, and the configuration of group, with comments.
///
/// Sensors have their camera's id, where that is a number that stream ids have room for; the others
/// get the lowest numbers that no camera has. Windows and arrays keep the origin that the phone
/// reports, so that crops are in the coordinates of the sensor itself. Angles of view are those of
/// the physical size.
/// @param isBinned give each sensor a second mode, which joins two by two pixels.
/// @throws UserError there are more cameras than numbers.
std::string rigText(CameraStock const& stock, SensorGroup const& group, bool isBinned);

}  // namespace zoomreplay
