// The part of each sensor's active array that shows what an application asked for.
#pragma once

#include <map>

#include "RigFile.h"
#include "WatchLine.h"

namespace zoomreplay {

/// The master's crop is the crop region inside the field of view that the zoom ratio leaves; the
/// crop region has its origin in the top left corner of the active array, wherever the sensor's
/// own coordinates begin. The other sensors' crops see the same by their angles of view, for a
/// parallel view at a distance. Crops are rounded to whole pixels and cut to their array.
/// @return active-array crops by sensor id, without the sensors that see nothing of it.
std::map<uint32_t, NSCam::MRect> cropsOf(ZoomValues const& values,
                                         std::vector<RigSensor> const& sensors);

}  // namespace zoomreplay
