// What a sensor's active array must be for crops to be computed in it.
#pragma once

#include <cstdint>
#include <limits>

#include "ZoomOverrideTypes.h"

namespace zoomreplay {

/// Whether an array has pixels, all of them at coordinates that exist.
inline bool isArray(NSCam::MRect const& rect) {
    constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
    return rect.x >= 0 && rect.y >= 0 && rect.w > 0 && rect.h > 0 && rect.w <= kMax - rect.x &&
           rect.h <= kMax - rect.y;
}

}  // namespace zoomreplay
