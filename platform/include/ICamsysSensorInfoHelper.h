// libqvxcam_camsys_sensor_utils: what the platform knows of its sensors.
#pragma once

#include <cstdint>
#include <memory>

#include "ZoomOverrideTypes.h"

namespace NSCam::utility {

/// What the platform knows of its sensors.
class ICamsysSensorInfoHelper {
 public:
    /// The platform's one helper. Any thread.
    static std::shared_ptr<ICamsysSensorInfoHelper> getInstance();

    virtual ~ICamsysSensorInfoHelper() = default;

    /// The output size of a sensor in a mode, TG pixels.
    /// @return false, size untouched, when the platform does not know it. Any thread.
    virtual bool getSensorSize(int32_t sensorId, int32_t sensorMode, MSize& size) = 0;
};

}  // namespace NSCam::utility
