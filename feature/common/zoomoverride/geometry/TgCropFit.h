// The three steps that make a TG crop fit a sensor's output: shrink, grow, move inside. TG pixels;
// any input is taken and int32 arithmetic wraps.
#pragma once

#include <functional>

#include "Numbers.h"
#include "ZoomOverrideTypes.h"

namespace NSCam::Feature {

/// Whether a crop is wider or higher than a size.
inline bool exceeds(MRect const& crop, MSize size) {
    return crop.w > size.w || crop.h > size.h;
}

/// Whether a crop is narrower or lower than a size.
inline bool fallsShortOf(MRect const& crop, MSize size) {
    return crop.w < size.w || crop.h < size.h;
}

/// Brings the sides of a crop that compare with limit to it. The ratio is the incoming crop's for
/// both sides: taking it anew after the width was set would add up rounding errors.
template <typename Compare>
void scaleToLimit(MRect& crop, MSize limit, Compare compare) {
    float const ratio = static_cast<float>(crop.w) / static_cast<float>(crop.h);
    if (compare(crop.w, limit.w)) {
        crop.w = limit.w;
        crop.h = roundToInt32(static_cast<float>(limit.w) / ratio);
    }
    if (compare(crop.h, limit.h)) {
        crop.h = limit.h;
        crop.w = roundToInt32(ratio * static_cast<float>(limit.h));
    }
}

/// Puts a crop into the middle of the sensor's output, at a negative corner where it is larger.
inline void centreOn(MSize sensor, MRect& crop) {
    crop.x = wrapSub(sensor.w, crop.w) / 2;
    crop.y = wrapSub(sensor.h, crop.h) / 2;
}

/// Shrinks a crop that exceeds the sensor's output to it, aspect ratio kept, and centres it there.
inline void shrinkToSensor(MRect& crop, MSize sensor) {
    scaleToLimit(crop, sensor, std::greater<>());
    centreOn(sensor, crop);
}

/// Grows a crop that falls short of minSize to it, aspect ratio kept, and centres it on the
/// sensor's output, wherever it lay before. The result may be larger than the output.
inline void growToMinSize(MRect& crop, MSize minSize, MSize sensor) {
    scaleToLimit(crop, minSize, std::less<>());
    centreOn(sensor, crop);
}

/// Edges of the sensor's output that a crop reached over, as bits.
enum CrossedEdges : uint8_t {
    kNoEdge = 0,
    kLeftEdge = 1U << 0U,
    kTopEdge = 1U << 1U,
    kRightEdge = 1U << 2U,
    kBottomEdge = 1U << 3U,
};

/// Moves a crop inside the sensor's output, its size kept. The right and bottom edges come last: a
/// crop that is too large keeps its far edges in view and ends with a negative corner.
/// @return the edges, CrossedEdges, that it was moved away from.
inline uint32_t moveInside(MRect& crop, MSize sensor) {
    uint32_t crossed = kNoEdge;
    if (crop.x < 0) {
        crop.x = 0;
        crossed |= kLeftEdge;
    }
    if (crop.y < 0) {
        crop.y = 0;
        crossed |= kTopEdge;
    }
    if (wrapAdd(crop.x, crop.w) > sensor.w) {
        crop.x = wrapSub(sensor.w, crop.w);
        crossed |= kRightEdge;
    }
    if (wrapAdd(crop.y, crop.h) > sensor.h) {
        crop.y = wrapSub(sensor.h, crop.h);
        crossed |= kBottomEdge;
    }
    return crossed;
}

}  // namespace NSCam::Feature
