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

/// The edges of the sensor's output that a crop reached over.
struct CrossedEdges {
    bool left = false;
    bool top = false;
    bool right = false;
    bool bottom = false;
};

/// Moves a crop inside the sensor's output, its size kept. The right and bottom edges come last: a
/// crop that is too large keeps its far edges in view and ends with a negative corner.
/// @return the edges that it was moved away from.
inline CrossedEdges moveInside(MRect& crop, MSize sensor) {
    CrossedEdges crossed;
    crossed.left = crop.x < 0;
    if (crossed.left) {
        crop.x = 0;
    }
    crossed.top = crop.y < 0;
    if (crossed.top) {
        crop.y = 0;
    }
    crossed.right = wrapAdd(crop.x, crop.w) > sensor.w;
    if (crossed.right) {
        crop.x = wrapSub(sensor.w, crop.w);
    }
    crossed.bottom = wrapAdd(crop.y, crop.h) > sensor.h;
    if (crossed.bottom) {
        crop.y = wrapSub(sensor.h, crop.h);
    }
    return crossed;
}

}  // namespace NSCam::Feature
