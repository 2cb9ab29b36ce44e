// The numbers and names by which a pipeline, customer code and whoever looks at a phone meet the
// module.
#pragma once

#include <cstddef>
#include <cstdint>

namespace NSCam::Feature {

/// @name Metadata of a request in InstantRequest mode
/// @{

/// The zoom ratio of the override: one float. A request must have it.
inline constexpr uint32_t kZoomRatioTag = 0x1002F;

/// Crops for the customer's streams, active array: kItemsPerCustomCrop int32 for each.
inline constexpr uint32_t kCustomStreamCropTag = 0x800A0013;

/// Customer stream number, x, y, width, height.
inline constexpr uint32_t kItemsPerCustomCrop = 5;
/// @}

/// The tag of the module's log lines.
inline constexpr char kLogTag[] = "qvxcam-ZoomOverrideMgr";

/// @name The customer's container in ExternalAPI mode
/// Readers and writers meet in it only when they agree on all three.
/// @{
inline constexpr char const* kCustomZoomContainer = kLogTag;  ///< name
inline constexpr size_t kCustomZoomCapacity = 3;              ///< entries kept
inline constexpr uint32_t kCustomZoomFlags = 0;               ///< none
/// @}

/// @name System properties, integers, 0 when not set
/// The first three are read once, when the manager is created.
/// @{

/// How much of each request is logged; 0 for the least.
inline constexpr char kLogLevelProperty[] = "vendor.debug.camera.zoomOverride.log";

/// Not 0: no P1 crop is overridden.
inline constexpr char kCloseP1Property[] = "vendor.debug.camera.zoomOverride.closeP1Override";

/// Not 0: no P2 crop is overridden.
inline constexpr char kCloseP2Property[] = "vendor.debug.camera.zoomOverride.closeP2Override";

/// The default mapper's zoom ratio in tenths, in place of the published one.
inline constexpr char kMapperZoomRatioProperty[] = "vendor.debug.camera.zoomRatio";
/// @}

}  // namespace NSCam::Feature
