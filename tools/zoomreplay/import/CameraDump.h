// The static characteristics of a phone's cameras, out of what `dumpsys media.camera` prints.
#pragma once

#include <array>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "PhoneText.h"
#include "ZoomOverrideTypes.h"

namespace zoomreplay {

namespace tag {
inline constexpr std::string_view kActiveArray = "android.sensor.info.activeArraySize";
inline constexpr std::string_view kPhysicalSize = "android.sensor.info.physicalSize";
inline constexpr std::string_view kFocalLengths = "android.lens.info.availableFocalLengths";
inline constexpr std::string_view kPhysicalIds = "android.logicalMultiCamera.physicalIds";
inline constexpr std::string_view kZoomRatioRange = "android.control.zoomRatioRange";
}  // namespace tag

/// What the phone says of one camera. A tag that is missing or unreadable leaves its field empty.
struct CameraStatics {
    std::string id;         ///< printable and without blanks; mostly a number
    std::string logicalId;  ///< of the logical camera that a hidden camera is printed under, or ""
    std::optional<NSCam::MRect> activeArray;
    std::optional<std::array<float, 2>> physicalSize;  ///< width and height, millimetres
    std::vector<float> focalLengths;                   ///< millimetres
    std::vector<std::string> physicalIds;              ///< empty: not a logical camera
    std::optional<std::array<float, 2>> zoomRatioRange;
    std::set<std::string_view> unreadable;  ///< tags that are there, but damaged
};

/// Reads a whole dump. Cameras come in the dump's order; of those that it prints more than once, as
/// it does with a hidden camera of two logical ones, the first.
std::vector<CameraStatics> readCameraDump(PhoneText& dump);

}  // namespace zoomreplay
