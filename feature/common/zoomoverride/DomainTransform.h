// Conversion of crops from a sensor's active array into the TG domain of one of its modes.
#pragma once

#include "HwTransHelper.h"
#include "Numbers.h"
#include "ZoomOverrideTypes.h"

namespace NSCam::Feature {

/// Converts a crop (MRect or MRectF, active array) by a mode's matrix, in single precision.
///
/// Each field is truncated on its own: the size is scaled, not taken from converted corners, so
/// that crops of one size keep one size wherever they lie. Nothing is clamped.
template <typename Rect>
MRect toTgDomain(NSCamHW::simplifiedMatrix const& matrix, Rect const& active) {
    return {truncateToInt32(matrix.xScale * static_cast<float>(active.x) + matrix.xOffset),
            truncateToInt32(matrix.yScale * static_cast<float>(active.y) + matrix.yOffset),
            truncateToInt32(matrix.xScale * static_cast<float>(active.w)),
            truncateToInt32(matrix.yScale * static_cast<float>(active.h))};
}

}  // namespace NSCam::Feature
