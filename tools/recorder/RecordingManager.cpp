#include "RecordingManager.h"

#include <exception>

namespace zoomrecorder {

using namespace NSCam;           // NOLINT(google-build-using-namespace)
using namespace NSCam::Feature;  // NOLINT(google-build-using-namespace)

namespace {

/// Sets a flag for as long as it lives, also when an exception passes.
class Raised {
 public:
    explicit Raised(bool& flag) : mFlag(flag) { mFlag = true; }
    ~Raised() { mFlag = false; }
    Raised(Raised const&) = delete;
    Raised& operator=(Raised const&) = delete;

 private:
    bool& mFlag;
};

}  // namespace

// Written first: a call that ends the process is the one that matters most. The module looks itself
// up by the symbol that the recorder has taken over, so its strategies call back through here;
// those calls are the module's own, and a replay makes them by itself.
template <typename Write, typename Call>
auto RecordingManager::record(Write write, Call call) {
    std::lock_guard const guard(mLock);
    if (mIsForwarding || mRecorder->hasFailed()) {
        return call(*mReal);
    }
    Raised const forwarding(mIsForwarding);
    try {
        write(*mRecorder);
    } catch (std::exception const& e) {
        mRecorder->giveUp(e.what());
    }
    return call(*mReal);
}

bool RecordingManager::configFspInfo(ZoomOverrideFspInfoConfig const& config) {
    return record([&](CallRecorder& recorder) { recorder.configFspInfo(config); },
                  [&](IZoomOverrideMgr& real) { return real.configFspInfo(config); });
}

bool RecordingManager::configSensorInfo(ZoomOverrideSensorInfoConfig const& config) {
    return record([&](CallRecorder& recorder) { recorder.configSensorInfo(config); },
                  [&](IZoomOverrideMgr& real) { return real.configSensorInfo(config); });
}

bool RecordingManager::getP1CropSetting(ZoomOverrideRequest const& request,
                                        ZoomOverrideP1Need& need) {
    return record([&](CallRecorder& recorder) { recorder.getP1CropSetting(request, need); },
                  [&](IZoomOverrideMgr& real) { return real.getP1CropSetting(request, need); });
}

bool RecordingManager::getP2CropSetting(ZoomOverrideRequest const& request,
                                        ZoomOverrideP2Need& need, bool manual) {
    return record(
        [&](CallRecorder& recorder) { recorder.getP2CropSetting(request, need, manual); },
        [&](IZoomOverrideMgr& real) { return real.getP2CropSetting(request, need, manual); });
}

bool RecordingManager::get3ACropSetting(ZoomOverrideRequest const& request,
                                        ZoomOverride3ANeed& need) {
    return record([&](CallRecorder& recorder) { recorder.get3ACropSetting(request, need); },
                  [&](IZoomOverrideMgr& real) { return real.get3ACropSetting(request, need); });
}

bool RecordingManager::storeOverrideSetting(
    IMetadata const* metadata, std::unordered_map<uint32_t, uint64_t> const& streamIdMap) {
    return record(
        [&](CallRecorder& recorder) { recorder.storeOverrideSetting(metadata, streamIdMap); },
        [&](IZoomOverrideMgr& real) { return real.storeOverrideSetting(metadata, streamIdMap); });
}

bool RecordingManager::storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                                            std::shared_ptr<ZoomOverrideSetting> setting) {
    return record(
        [&](CallRecorder& recorder) {
            recorder.storeOverrideSetting(requestNo, notice, setting.get());
        },
        [&](IZoomOverrideMgr& real) {
            return real.storeOverrideSetting(requestNo, notice, std::move(setting));
        });
}

bool RecordingManager::onRequestDone(uint32_t requestNo) {
    return record([&](CallRecorder& recorder) { recorder.onRequestDone(requestNo); },
                  [&](IZoomOverrideMgr& real) { return real.onRequestDone(requestNo); });
}

ZoomOverrideMode RecordingManager::getZoomOverrideMode() {
    return record([](CallRecorder& recorder) { recorder.getZoomOverrideMode(); },
                  [](IZoomOverrideMgr& real) { return real.getZoomOverrideMode(); });
}

bool RecordingManager::initialize(ZoomOverrideMode mode) {
    return record([&](CallRecorder& recorder) { recorder.initialize(mode); },
                  [&](IZoomOverrideMgr& real) { return real.initialize(mode); });
}

bool RecordingManager::configSensorBehaviorInfo(
    ZoomOverrideSensorBehaviorInfoConfig const& config) {
    return record([&](CallRecorder& recorder) { recorder.configSensorBehaviorInfo(config); },
                  [&](IZoomOverrideMgr& real) { return real.configSensorBehaviorInfo(config); });
}

bool RecordingManager::setRunTimeCropNeedData(uint32_t requestNo, OverrideNotice notice,
                                              RunTimeCropNeedData&& data) {
    return record(
        [&](CallRecorder& recorder) { recorder.setRunTimeCropNeedData(requestNo, notice, data); },
        [&](IZoomOverrideMgr& real) {
            return real.setRunTimeCropNeedData(requestNo, notice, std::move(data));
        });
}

std::shared_ptr<RunTimeCropNeedData> RecordingManager::getHistoryCropNeedData(int32_t requestNo) {
    return record([&](CallRecorder& recorder) { recorder.getHistoryCropNeedData(requestNo); },
                  [&](IZoomOverrideMgr& real) { return real.getHistoryCropNeedData(requestNo); });
}

bool RecordingManager::isPortExist(int32_t sensorId, int32_t port) {
    return record([&](CallRecorder& recorder) { recorder.isPortExist(sensorId, port); },
                  [&](IZoomOverrideMgr& real) { return real.isPortExist(sensorId, port); });
}

bool RecordingManager::correctTgCropRegion(int32_t sensorId, int32_t sensorMode, bool checkMinSize,
                                           MSize minSize, MRect& crop) {
    return record(
        [&](CallRecorder& recorder) {
            recorder.correctTgCropRegion(sensorId, sensorMode, checkMinSize, minSize, crop);
        },
        [&](IZoomOverrideMgr& real) {
            return real.correctTgCropRegion(sensorId, sensorMode, checkMinSize, minSize, crop);
        });
}

}  // namespace zoomrecorder
