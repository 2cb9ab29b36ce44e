// The steps that make a TG crop fit a sensor's output. Pure geometry, TG pixels; any input is taken
// and int32 arithmetic wraps.
#pragma once

#include "ZoomOverrideTypes.h"

namespace NSCam::Feature {

/// Whether a crop is wider or higher than a size.
bool exceeds(MRect const& crop, MSize size);

/// Whether a crop is narrower or lower than a size.
bool fallsShortOf(MRect const& crop, MSize size);

/// Shrinks a crop that exceeds the sensor's output to it, aspect ratio kept, and centres it there.
void shrinkToSensor(MRect& crop, MSize sensor);

/// Grows a crop that falls short of minSize to it, aspect ratio kept, and centres it on the
/// sensor's output, wherever it lay before. The result may be larger than the output.
void growToMinSize(MRect& crop, MSize minSize, MSize sensor);

}  // namespace NSCam::Feature
