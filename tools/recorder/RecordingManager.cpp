// Records each call before it is handed on.
#include "RecordingManager.h"

#include <pthread.h>

#include <exception>

#include "BootClock.h"

namespace zoomrecorder {

using namespace NSCam;
using namespace NSCam::Feature;

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

/// Measures a call, also one that an exception ends.
class Timed {
 public:
    explicit Timed(CallRecorder& recorder) : mRecorder(recorder), mBegin(bootNanoseconds()) {}
    ~Timed() { mRecorder.noteDuration(bootNanoseconds() - mBegin); }
    Timed(Timed const&) = delete;
    Timed& operator=(Timed const&) = delete;

 private:
    CallRecorder& mRecorder;
    int64_t const mBegin;
};

RecordingManager* theManager = nullptr;  // the handlers of a fork take no context

}  // namespace

RecordingManager::RecordingManager(std::unique_ptr<CallRecorder> recorder,
                                   std::shared_ptr<IZoomOverrideMgr> real)
    : mRecorder(std::move(recorder)), mReal(std::move(real)) {
    theManager = this;
    pthread_atfork(beforeFork, afterForkInParent, afterForkInChild);
}

// With the lock held no other thread is in the module either, whose lock the child would inherit.
void RecordingManager::beforeFork() {
    theManager->mLock.lock();
}

void RecordingManager::afterForkInParent() {
    theManager->mLock.unlock();
}

// The lock belongs to a thread of the parent, and is left alone from now on.
void RecordingManager::afterForkInChild() {
    theManager->mIsForkedChild = true;
}

// Written first: a call that ends the process is the one that matters most. The module looks itself
// up by the symbol that the recorder has taken over, so its strategies call back through here;
// those calls are the module's own, and a replay makes them by itself.
template <typename Write, typename Call>
auto RecordingManager::record(Write write, Call call) {
    if (mIsForkedChild) {
        return call(*mReal);
    }
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

template <typename Write, typename Call>
auto RecordingManager::recordQuery(Write write, Call call) {
    return record(write, [&](IZoomOverrideMgr& real) {
        Timed const timed(*mRecorder);
        return call(real);
    });
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
    return recordQuery(
        [&](CallRecorder& recorder) { recorder.getP1CropSetting(request, need); },
        [&](IZoomOverrideMgr& real) { return real.getP1CropSetting(request, need); });
}

bool RecordingManager::getP2CropSetting(ZoomOverrideRequest const& request,
                                        ZoomOverrideP2Need& need, bool manual) {
    return recordQuery(
        [&](CallRecorder& recorder) { recorder.getP2CropSetting(request, need, manual); },
        [&](IZoomOverrideMgr& real) { return real.getP2CropSetting(request, need, manual); });
}

bool RecordingManager::get3ACropSetting(ZoomOverrideRequest const& request,
                                        ZoomOverride3ANeed& need) {
    return recordQuery(
        [&](CallRecorder& recorder) { recorder.get3ACropSetting(request, need); },
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
