// What an application asked of the camera, out of the log of `cmd media.camera watch`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "PhoneText.h"
#include "ZoomOverrideTypes.h"

namespace zoomreplay {

/// What holds from a logged frame on.
struct WatchedFrame {
    uint64_t number = 0;
    float zoomRatio = 1.0F;                  ///< positive
    std::optional<NSCam::MRect> cropRegion;  ///< none logged yet: the whole active array
};

struct WatchLog {
    std::vector<WatchedFrame> frames;  ///< in the order of time
    uint64_t unusableLines = 0;        ///< of requests, with values that make no sense
    std::string firstUnusable;         ///< "LINE: what is wrong" of the first of them
};

/// Reads a whole log. It has a line only where a value changes; values that are not printed hold. A
/// log that is printed newest first, so that its frame numbers fall, is turned round.
WatchLog readWatchLog(PhoneText& log);

}  // namespace zoomreplay
