// Host control of the sensor table, from which the host platform answers matrices and output sizes.
// Kept by libqvxcam_camsys_sensor_utils, read by libqvxcam_hwutils. Any thread.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "HwTransHelper.h"
#include "ZoomOverrideTypes.h"

namespace NSCam::Host {

/// One sensor mode. What is left out makes the platform call that needs it fail.
struct SensorModeInfo {
    std::optional<MSize> size;                            ///< output size, TG pixels
    std::optional<NSCamHW::simplifiedMatrix> fromActive;  ///< active array to TG domain
};

/// By sensor mode.
using SensorModes = std::map<uint32_t, SensorModeInfo>;

/// The transform of a mode that reads out window (active array) and delivers it at size.
///
/// Single precision: xScale = size.w / window.w, xOffset = -window.x * xScale, and the same for y.
/// The IMX708's 1536x864 mode reads (768, 432) 3072x1728: scale 1/2, offsets -384 and -216.
/// @pre window is not empty; otherwise scales and offsets are infinite or NaN.
NSCamHW::simplifiedMatrix matrixOfWindow(MSize size, MRect window);

/// Defines a sensor, replacing an earlier one of that id whole.
void setSensor(int32_t sensorId, SensorModes modes);

/// Forgets all sensors.
void clearSensors();

/// Off: ICamsysSensorInfoHelper::getInstance answers null, as on a platform without the service. A
/// process starts with it on.
void enableSensorInfo(bool on);

/// A mode of a sensor; empty when the sensor or the mode is not defined.
std::optional<SensorModeInfo> findSensorMode(int32_t sensorId, uint32_t sensorMode);

/// How often the platform was asked for a sensor's output size. Tests hold caches to it.
uint64_t sensorSizeQueryCount();

}  // namespace NSCam::Host
