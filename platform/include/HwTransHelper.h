// libqvxcam_hwutils: transforms between a sensor's active array and its TG domains.
#pragma once

#include <cstdint>

namespace NSCamHW {

/// x' = xScale * x + xOffset, w' = xScale * w, and the same for y and h. Made without values.
struct simplifiedMatrix {
    float xScale;   ///< TG pixels per active-array pixel, horizontally
    float xOffset;  ///< TG pixels
    float yScale;   ///< TG pixels per active-array pixel, vertically
    float yOffset;  ///< TG pixels
};

/// The transforms of one sensor. Cheap to make; any thread.
class HwTransHelper {
 public:
    /// Any id will do; the platform need not know it.
    explicit HwTransHelper(int32_t sensorId) : mSensorId(sensorId) {}

    /// Active array to the TG domain of sensorMode.
    /// @return false, matrix untouched, when the platform has no transform for the mode.
    bool getMatrixFromActive(uint32_t sensorMode, simplifiedMatrix& matrix);

    /// TG domain of sensorMode to the active array.
    /// @return as for getMatrixFromActive; also false when the transform has no inverse.
    bool getMatrixToActive(uint32_t sensorMode, simplifiedMatrix& matrix);

 private:
    int32_t mSensorId;
};

}  // namespace NSCamHW
