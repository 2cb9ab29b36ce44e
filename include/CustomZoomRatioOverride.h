// What a customer publishes to override the zoom in ExternalAPI mode.
#pragma once

namespace NSCam::v3 {

/// An entry of the generic container kCustomZoomContainer (ZoomOverrideContract.h), which holds
/// shared pointers to this record. The newest entry applies to every request until a newer one is
/// published. Once published an entry must not be written to.
struct CustomZoomRatioOverride {
    float zoomRatio = 0.0F;  ///< wanted for the master sensor: 1 is no zoom, 2 twice
    bool enable = false;     ///< the override switch; false means no override
};

}  // namespace NSCam::v3
