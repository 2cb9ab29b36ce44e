// Answers the sensors' output sizes from the sensor table, and counts the questions.
#include <atomic>

#include "ICamsysSensorInfoHelper.h"
#include "host/SensorTable.h"

namespace {

constinit std::atomic<bool> gEnabled{true};
constinit std::atomic<uint64_t> gSizeQueries{0};

class CamsysSensorInfoHelper final : public NSCam::utility::ICamsysSensorInfoHelper {
 public:
    bool getSensorSize(int32_t sensorId, int32_t sensorMode, NSCam::MSize& size) override {
        gSizeQueries.fetch_add(1, std::memory_order_relaxed);
        auto const mode = NSCam::Host::findSensorMode(sensorId, static_cast<uint32_t>(sensorMode));
        if (!mode || !mode->size) {
            return false;
        }
        size = *mode->size;
        return true;
    }
};

}  // namespace

namespace NSCam::utility {

std::shared_ptr<ICamsysSensorInfoHelper> ICamsysSensorInfoHelper::getInstance() {
    // Never destroyed: asked also while the process exits.
    static auto const& instance =
        *new std::shared_ptr<ICamsysSensorInfoHelper>(std::make_shared<CamsysSensorInfoHelper>());
    return gEnabled.load(std::memory_order_relaxed) ? instance : nullptr;
}

}  // namespace NSCam::utility

namespace NSCam::Host {

void enableSensorInfo(bool on) {
    gEnabled.store(on, std::memory_order_relaxed);
}

uint64_t sensorSizeQueryCount() {
    return gSizeQueries.load(std::memory_order_relaxed);
}

}  // namespace NSCam::Host
