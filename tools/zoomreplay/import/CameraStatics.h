// What a phone says of its cameras, whatever the text was that said it.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZoomOverrideTypes.h"

namespace zoomreplay {

namespace tag {
inline constexpr std::string_view kActiveArray = "android.sensor.info.activeArraySize";
inline constexpr std::string_view kPixelArray = "android.sensor.info.pixelArraySize";
inline constexpr std::string_view kPhysicalSize = "android.sensor.info.physicalSize";
inline constexpr std::string_view kOrientation = "android.sensor.orientation";
inline constexpr std::string_view kFacing = "android.lens.facing";
inline constexpr std::string_view kFocalLengths = "android.lens.info.availableFocalLengths";
inline constexpr std::string_view kIntrinsics = "android.lens.intrinsicCalibration";
inline constexpr std::string_view kPhysicalIds = "android.logicalMultiCamera.physicalIds";
inline constexpr std::string_view kZoomRatioRange = "android.control.zoomRatioRange";
inline constexpr std::string_view kDigitalZoom = "android.scaler.availableMaxDigitalZoom";
}  // namespace tag

enum class Facing { Unknown, Back, Front, External };

/// Camera ids whose characters are known, but not where one id ends and the next begins.
struct JoinedIds {
    std::string characters;
    size_t count = 0;  ///< of ids
};

/// A tag that is missing or unreadable leaves its field empty.
struct CameraStatics {
    std::string id;         ///< printable and without blanks; mostly a number
    std::string logicalId;  ///< of the logical camera that a hidden camera is printed under, or ""
    Facing facing = Facing::Unknown;
    std::optional<int32_t> orientation;  ///< degrees
    std::optional<NSCam::MRect> activeArray;
    std::optional<NSCam::MSize> pixelArray;
    std::optional<std::array<float, 2>> physicalSize;  ///< of the pixel array, millimetres
    std::vector<float> focalLengths;                   ///< millimetres
    std::optional<std::array<float, 5>> intrinsics;    ///< fx, fy, cx, cy and skew, in pixels
    std::vector<std::string> physicalIds;              ///< empty: not a logical camera
    std::optional<JoinedIds> joinedIds;                ///< of physical cameras, to be split
    std::optional<std::array<float, 2>> zoomRatioRange;
    std::optional<float> digitalZoom;  ///< the largest
    bool hasTags = false;              ///< one of those above was there, readable or not
    std::map<std::string_view, std::string> unreadable;  ///< damaged tags, and what is there
};

/// Whether a camera stands for several others, which may be unreadable.
inline bool isLogical(CameraStatics const& camera) {
    return !camera.physicalIds.empty() || camera.unreadable.count(tag::kPhysicalIds) > 0;
}

/// An application's output of an open camera.
struct OpenStream {
    int32_t number = 0;
    NSCam::MSize size;
    std::string physicalId;  ///< of the physical camera that it is bound to; "" of the opened one
};

struct OpenSession {
    std::string cameraId;
    std::vector<OpenStream> streams;
};

/// All that a text says.
struct CameraDump {
    std::vector<CameraStatics> cameras;  ///< each id once, in the text's order
    std::vector<OpenSession> sessions;   ///< of the cameras that were open, with streams
    size_t announced = 0;  ///< how many descriptions the text says it has; 0 where it does not
    size_t described = 0;  ///< how many of those were found
};

}  // namespace zoomreplay
