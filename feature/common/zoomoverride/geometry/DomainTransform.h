// Conversion of crops from a sensor's active array into the TG domain of one of its modes.
#pragma once

#include "HwTransHelper.h"
#include "Numbers.h"
#include "ZoomOverrideTypes.h"

namespace NSCam::Feature {

/// What a matrix holds before the platform is asked for it. A device's own record has no initial
/// values, and a platform that knows no transform leaves it as it is.
inline constexpr NSCamHW::simplifiedMatrix kIdentityMatrix{
    .xScale = 1.0F, .xOffset = 0.0F, .yScale = 1.0F, .yOffset = 0.0F};

/// A crop (MRect or MRectF, active array) by a mode's matrix, in single precision: TG pixels and
/// fractions of them.
///
/// The size is scaled, not taken from converted corners, so that crops of one size keep one size
/// wherever they lie. Nothing is clamped.
template <typename Rect>
MRectF toExactTgDomain(NSCamHW::simplifiedMatrix const& matrix, Rect const& active) {
    return {matrix.xScale * static_cast<float>(active.x) + matrix.xOffset,
            matrix.yScale * static_cast<float>(active.y) + matrix.yOffset,
            matrix.xScale * static_cast<float>(active.w),
            matrix.yScale * static_cast<float>(active.h)};
}

/// As toExactTgDomain, with each field truncated on its own.
template <typename Rect>
MRect toTgDomain(NSCamHW::simplifiedMatrix const& matrix, Rect const& active) {
    MRectF const exact = toExactTgDomain(matrix, active);
    return {truncateToInt32(exact.x), truncateToInt32(exact.y), truncateToInt32(exact.w),
            truncateToInt32(exact.h)};
}

}  // namespace NSCam::Feature
