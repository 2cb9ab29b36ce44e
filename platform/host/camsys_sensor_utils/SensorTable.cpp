// The sensors of a workstation: what their modes deliver and how they map the active array.
#include "host/SensorTable.h"

#include <mutex>
#include <utility>

namespace NSCam::Host {
namespace {

struct Table {
    std::mutex mutex;
    std::map<int32_t, SensorModes> sensors;
};

Table& table() {
    static auto& instance = *new Table;  // never destroyed: read also while the process exits
    return instance;
}

}  // namespace

NSCamHW::simplifiedMatrix matrixOfWindow(MSize size, MRect window) {
    float const xScale = static_cast<float>(size.w) / static_cast<float>(window.w);
    float const yScale = static_cast<float>(size.h) / static_cast<float>(window.h);
    return {
        .xScale = xScale,
        .xOffset = -static_cast<float>(window.x) * xScale,
        .yScale = yScale,
        .yOffset = -static_cast<float>(window.y) * yScale,
    };
}

void setSensor(int32_t sensorId, SensorModes modes) {
    std::lock_guard const lock(table().mutex);
    table().sensors.insert_or_assign(sensorId, std::move(modes));
}

void clearSensors() {
    std::lock_guard const lock(table().mutex);
    table().sensors.clear();
}

std::optional<SensorModeInfo> findSensorMode(int32_t sensorId, uint32_t sensorMode) {
    std::lock_guard const lock(table().mutex);
    auto const sensor = table().sensors.find(sensorId);
    if (sensor == table().sensors.end()) {
        return std::nullopt;
    }
    auto const mode = sensor->second.find(sensorMode);
    if (mode == sensor->second.end()) {
        return std::nullopt;
    }
    return mode->second;
}

}  // namespace NSCam::Host
