// The transforms of a workstation's sensors, from the sensor table.
#include "HwTransHelper.h"

#include "host/SensorTable.h"

namespace NSCamHW {

bool HwTransHelper::getMatrixFromActive(uint32_t sensorMode, simplifiedMatrix& matrix) {
    auto const mode = NSCam::Host::findSensorMode(mSensorId, sensorMode);
    if (!mode || !mode->fromActive) {
        return false;
    }
    matrix = *mode->fromActive;
    return true;
}

bool HwTransHelper::getMatrixToActive(uint32_t sensorMode, simplifiedMatrix& matrix) {
    simplifiedMatrix from;
    if (!getMatrixFromActive(sensorMode, from) || from.xScale == 0.0F || from.yScale == 0.0F) {
        return false;
    }
    matrix = {
        .xScale = 1.0F / from.xScale,
        .xOffset = -from.xOffset / from.xScale,
        .yScale = 1.0F / from.yScale,
        .yOffset = -from.yOffset / from.yScale,
    };
    return true;
}

}  // namespace NSCamHW
