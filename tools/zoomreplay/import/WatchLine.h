// A line of the log of `cmd media.camera watch`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ZoomOverrideTypes.h"

namespace zoomreplay {

/// What an application asks of a camera, or what the camera says that it did. Empty: the default,
/// a zoom ratio of 1 and the whole array.
struct ZoomValues {
    std::optional<float> zoomRatio;  ///< positive
    std::optional<NSCam::MRect> cropRegion;
    std::optional<std::string> activeId;  ///< of the physical camera that the picture is from
};

/// Each line tells one value that has changed.
struct WatchLine {
    enum class Tag { ZoomRatio, CropRegion, ActiveId };

    std::string_view source;  ///< the camera's id and its application, as in "0:some.app"; or ""
    uint64_t frame = 0;
    uint64_t time = 0;  ///< nanoseconds, as the phone counts them; 0: not known
    bool isResult = false;
    Tag tag = Tag::ZoomRatio;
    ZoomValues values;  ///< only the tag's own; empty where the value was removed
};

/// Takes a line apart. Empty for lines that are about something else: headings, other tags, the
/// settings of a single physical camera.
/// @throws scenario::LineError the values make no sense: which, and what belongs there.
std::optional<WatchLine> parseWatchLine(std::string_view line);

/// Puts what the line tells into the values that hold.
void merge(ZoomValues& values, WatchLine const& line);

/// "0" of the source "0:some.app".
std::string_view cameraOf(std::string_view source);

}  // namespace zoomreplay
