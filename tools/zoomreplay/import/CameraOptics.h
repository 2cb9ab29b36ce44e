// What a camera sees, worked out from what a phone says of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CameraStatics.h"

namespace zoomreplay {

/// What the angles of view of a rig are taken from.
enum class AngleSource { PhysicalSize, Intrinsics };

/// Degrees.
struct Angles {
    float horizontal = 0.0F;
    float vertical = 0.0F;
};

/// Angles of view of the active array, 2 atan(d / 2f). The physical size is that of the pixel
/// array, of which the active array has its share; where the phone does not tell the pixel array it
/// counts for the active one.
/// @param camera has an active array, a physical size and a focal length.
Angles anglesBySize(CameraStatics const& camera);

/// The same from the focal lengths in pixels; empty where the phone tells none.
/// @param camera has an active array.
std::optional<Angles> anglesByIntrinsics(CameraStatics const& camera);

/// The angles that a rig takes; by size where the phone tells no focal lengths in pixels.
/// @param camera has an active array, a physical size and a focal length.
Angles anglesOf(CameraStatics const& camera, AngleSource source);

/// What cannot be right about a camera that a rig can be made of, though nothing is missing.
std::vector<std::string> doubtsAbout(CameraStatics const& camera);

}  // namespace zoomreplay
