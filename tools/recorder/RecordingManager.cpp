// Records each call before it is handed on.
#include "RecordingManager.h"

#include <pthread.h>

#include <exception>
#include <mutex>
#include <utility>

#include "BootClock.h"
#include "IMetadata.h"
#include "ZoomOverrideContract.h"
#include "scenario/text/Modes.h"

namespace zoomrecorder {

using namespace NSCam;
using namespace NSCam::Feature;

using scenario::Line;
using scenario::Object;
using scenario::OverrideSource;

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

void addNotice(Line& line, OverrideNotice notice) {
    if (notice != OverrideNotice::Default) {
        line.field("notice", notice);
    }
}

// Only what the manager reads of it. A null pointer lacks all tags.
std::string textOf(IMetadata const* metadata) {
    std::string text;
    Object object(text);
    float zoomRatio = 0.0F;
    if (IMetadata::getEntry(metadata, kZoomRatioTag, zoomRatio, 0)) {
        object.field("zoomRatio", zoomRatio);
    }
    auto const crops =
        metadata == nullptr ? IMetadata::IEntry{} : metadata->entryFor(kCustomStreamCropTag, 0);
    std::vector<int32_t> items;
    for (uint32_t i = 0; i < crops.count(); ++i) {
        items.push_back(crops.itemAt<int32_t>(i));
    }
    object.table("customStreamCrops", items).end();
    return text;
}

class RecordingManager final : public IZoomOverrideMgr {
 public:
    RecordingManager(std::unique_ptr<CallRecorder> recorder,
                     std::shared_ptr<IZoomOverrideMgr> real);

    bool configFspInfo(ZoomOverrideFspInfoConfig const& config) override;
    bool configSensorInfo(ZoomOverrideSensorInfoConfig const& config) override;
    bool getP1CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP1Need& need) override;
    bool getP2CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP2Need& need,
                          bool manual) override;
    bool get3ACropSetting(ZoomOverrideRequest const& request, ZoomOverride3ANeed& need) override;
    bool storeOverrideSetting(IMetadata const* metadata,
                              std::unordered_map<uint32_t, uint64_t> const& streamIdMap) override;
    bool storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                              std::shared_ptr<ZoomOverrideSetting> setting) override;
    bool onRequestDone(uint32_t requestNo) override;
    ZoomOverrideMode getZoomOverrideMode() override;
    bool initialize(ZoomOverrideMode mode) override;
    bool configSensorBehaviorInfo(ZoomOverrideSensorBehaviorInfoConfig const& config) override;
    bool setRunTimeCropNeedData(uint32_t requestNo, OverrideNotice notice,
                                RunTimeCropNeedData&& data) override;
    std::shared_ptr<RunTimeCropNeedData> getHistoryCropNeedData(int32_t requestNo) override;
    bool isPortExist(int32_t sensorId, int32_t port) override;
    bool correctTgCropRegion(int32_t sensorId, int32_t sensorMode, bool checkMinSize, MSize minSize,
                             MRect& crop) override;

 private:
    /// Answers what call does. Before that record runs, unless nothing is to be recorded.
    template <typename Record, typename Call>
    auto recorded(Record record, Call call);

    /// Records a line to which write adds the arguments.
    template <typename Write, typename Call>
    auto record(LineSubject subject, char const* op, Write write, Call call);

    template <typename Need, typename Call>
    auto recordQuery(LineKind kind, char const* op, ZoomOverrideRequest const& request,
                     Need const& need, bool manual, Call call);

    void noteOverride();

    static void beforeFork();
    static void afterForkInParent();
    static void afterForkInChild();

    std::recursive_mutex mLock;  // strategies call back
    bool mIsForwarding = false;
    bool mIsForkedChild = false;
    ZoomOverrideMode mMode = ZoomOverrideMode::None;
    std::unique_ptr<CallRecorder> const mRecorder;
    std::shared_ptr<IZoomOverrideMgr> const mReal;
};

RecordingManager* theManager = nullptr;  // the handlers of a fork take no context

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
template <typename Record, typename Call>
auto RecordingManager::recorded(Record record, Call call) {
    if (mIsForkedChild) {
        return call();
    }
    std::lock_guard const guard(mLock);
    if (mIsForwarding || mRecorder->hasFailed()) {
        return call();
    }
    Raised const forwarding(mIsForwarding);
    try {
        record();
    } catch (std::exception const& e) {
        mRecorder->giveUp(e.what());
    }
    return call();
}

template <typename Write, typename Call>
auto RecordingManager::record(LineSubject subject, char const* op, Write write, Call call) {
    return recorded([&] { mRecorder->add(subject, op, write); }, call);
}

template <typename Need, typename Call>
auto RecordingManager::recordQuery(LineKind kind, char const* op,
                                   ZoomOverrideRequest const& request, Need const& need,
                                   bool manual, Call call) {
    auto const write = [&](Line& line) {
        line.fields(request);
        if (manual) {
            line.field("manual", manual);
        }
        if (!scenario::isFresh(need)) {
            line.field("need", need);
        }
    };
    return recorded(
        [&] {
            noteOverride();
            mRecorder->add({kind, request.requestNo}, op, write);
        },
        [&] {
            Timed const timed(*mRecorder);
            return call();
        });
}

// What no call hands over.
void RecordingManager::noteOverride() {
    switch (scenario::traitsOf(mMode).source) {
        case OverrideSource::Published:
            mRecorder->platform().noteNewestEntry();
            break;
        case OverrideSource::None:
        case OverrideSource::Setting:
        case OverrideSource::Metadata:
            break;
    }
}

bool RecordingManager::configFspInfo(ZoomOverrideFspInfoConfig const& config) {
    return record(
        {LineKind::ConfigFspInfo}, __func__, [&](Line& line) { line.fields(config); },
        [&] { return mReal->configFspInfo(config); });
}

bool RecordingManager::configSensorInfo(ZoomOverrideSensorInfoConfig const& config) {
    return record(
        {LineKind::ConfigSensorInfo}, __func__, [&](Line& line) { line.fields(config); },
        [&] { return mReal->configSensorInfo(config); });
}

bool RecordingManager::configSensorBehaviorInfo(
    ZoomOverrideSensorBehaviorInfoConfig const& config) {
    return record(
        {LineKind::ConfigSensorBehaviorInfo}, __func__, [&](Line& line) { line.fields(config); },
        [&] { return mReal->configSensorBehaviorInfo(config); });
}

bool RecordingManager::getP1CropSetting(ZoomOverrideRequest const& request,
                                        ZoomOverrideP1Need& need) {
    return recordQuery(LineKind::P1Query, __func__, request, need, false,
                       [&] { return mReal->getP1CropSetting(request, need); });
}

bool RecordingManager::getP2CropSetting(ZoomOverrideRequest const& request,
                                        ZoomOverrideP2Need& need, bool manual) {
    return recordQuery(LineKind::Other, __func__, request, need, manual,
                       [&] { return mReal->getP2CropSetting(request, need, manual); });
}

bool RecordingManager::get3ACropSetting(ZoomOverrideRequest const& request,
                                        ZoomOverride3ANeed& need) {
    return recordQuery(LineKind::Other, __func__, request, need, false,
                       [&] { return mReal->get3ACropSetting(request, need); });
}

bool RecordingManager::storeOverrideSetting(
    IMetadata const* metadata, std::unordered_map<uint32_t, uint64_t> const& streamIdMap) {
    auto const write = [&](Line& line) {
        line.json("metadata", textOf(metadata)).table("streamIdMap", streamIdMap);
    };
    return record({LineKind::Metadata}, __func__, write,
                  [&] { return mReal->storeOverrideSetting(metadata, streamIdMap); });
}

bool RecordingManager::storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                                            std::shared_ptr<ZoomOverrideSetting> setting) {
    auto const kind =
        notice == OverrideNotice::Repeating ? LineKind::MovedSetting : LineKind::Setting;
    auto const write = [&](Line& line) {
        line.field("requestNo", requestNo);
        addNotice(line, notice);
        line.field("setting", setting);
    };
    return record({kind}, __func__, write, [&] {
        return mReal->storeOverrideSetting(requestNo, notice, std::move(setting));
    });
}

bool RecordingManager::onRequestDone(uint32_t requestNo) {
    return record(
        {LineKind::Done, requestNo}, __func__,
        [&](Line& line) { line.field("requestNo", requestNo); },
        [&] { return mReal->onRequestDone(requestNo); });
}

ZoomOverrideMode RecordingManager::getZoomOverrideMode() {
    return record(
        {}, __func__, [](Line&) {}, [&] { return mReal->getZoomOverrideMode(); });
}

bool RecordingManager::initialize(ZoomOverrideMode mode) {
    auto const write = [&](Line& line) {
        mMode = mode;
        line.field("mode", mode);
    };
    return record({LineKind::Initialize}, __func__, write, [&] { return mReal->initialize(mode); });
}

bool RecordingManager::setRunTimeCropNeedData(uint32_t requestNo, OverrideNotice notice,
                                              RunTimeCropNeedData&& data) {
    bool const isRepeating = notice == OverrideNotice::Repeating;
    auto const write = [&](Line& line) {
        if (!isRepeating) {
            mRecorder->platform().noteSensors(data.sensorModes);
        }
        line.field("requestNo", requestNo);
        addNotice(line, notice);
        line.fields(data);
    };
    return record(
        {isRepeating ? LineKind::RepeatingDeposit : LineKind::Deposit, requestNo}, __func__, write,
        [&] { return mReal->setRunTimeCropNeedData(requestNo, notice, std::move(data)); });
}

std::shared_ptr<RunTimeCropNeedData> RecordingManager::getHistoryCropNeedData(int32_t requestNo) {
    return record(
        {}, __func__, [&](Line& line) { line.field("requestNo", requestNo); },
        [&] { return mReal->getHistoryCropNeedData(requestNo); });
}

bool RecordingManager::isPortExist(int32_t sensorId, int32_t port) {
    return record(
        {}, __func__, [&](Line& line) { line.field("sensorId", sensorId).field("port", port); },
        [&] { return mReal->isPortExist(sensorId, port); });
}

bool RecordingManager::correctTgCropRegion(int32_t sensorId, int32_t sensorMode, bool checkMinSize,
                                           MSize minSize, MRect& crop) {
    auto const write = [&](Line& line) {
        mRecorder->platform().noteSensor(sensorId, static_cast<uint32_t>(sensorMode));
        line.field("sensorId", sensorId)
            .field("sensorMode", sensorMode)
            .field("checkMinSize", checkMinSize)
            .field("minSize", minSize)
            .field("crop", crop);
    };
    return record({}, __func__, write, [&] {
        return mReal->correctTgCropRegion(sensorId, sensorMode, checkMinSize, minSize, crop);
    });
}

}  // namespace

std::shared_ptr<IZoomOverrideMgr> makeRecordingManager(std::unique_ptr<CallRecorder> recorder,
                                                       std::shared_ptr<IZoomOverrideMgr> real) {
    return std::make_shared<RecordingManager>(std::move(recorder), std::move(real));
}

}  // namespace zoomrecorder
