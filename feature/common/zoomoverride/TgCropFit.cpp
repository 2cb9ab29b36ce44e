// The steps that make a TG crop fit a sensor's output.
#include "TgCropFit.h"

#include <functional>

#include "Numbers.h"

namespace NSCam::Feature {

namespace {

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

void centreOn(MSize sensor, MRect& crop) {
    crop.x = wrapSub(sensor.w, crop.w) / 2;
    crop.y = wrapSub(sensor.h, crop.h) / 2;
}

}  // namespace

bool exceeds(MRect const& crop, MSize size) {
    return crop.w > size.w || crop.h > size.h;
}

bool fallsShortOf(MRect const& crop, MSize size) {
    return crop.w < size.w || crop.h < size.h;
}

void shrinkToSensor(MRect& crop, MSize sensor) {
    scaleToLimit(crop, sensor, std::greater<>());
    centreOn(sensor, crop);
}

void growToMinSize(MRect& crop, MSize minSize, MSize sensor) {
    scaleToLimit(crop, minSize, std::less<>());
    centreOn(sensor, crop);
}

}  // namespace NSCam::Feature
