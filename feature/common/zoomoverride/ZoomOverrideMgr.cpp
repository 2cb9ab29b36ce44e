// The manager: lifecycle, dispatch to the strategy, per-request history and TG crop correction.
#include "ZoomOverrideMgr.h"

#include <cstddef>
#include <exception>
#include <new>
#include <utility>

#include "ICamsysSensorInfoHelper.h"
#include "LogLines.h"
#include "Properties.h"
#include "ZoomOverrideByRequest.h"
#include "ZoomOverrideContract.h"
#include "ZoomOverrideExternalAPI.h"
#include "ZoomOverrideInstantRequest.h"
#include "geometry/TgCropFit.h"

namespace NSCam::Feature {

namespace {

// The helper of the correction logs in its name.
constexpr char kCorrectTgCropRegion[] = "correctTgCropRegion";

char const* toText(OverrideNotice notice) {
    return notice == OverrideNotice::Repeating ? "repeating" : "default";
}

std::unique_ptr<ZoomOverrideBase> makeStrategy(ZoomOverrideMode mode,
                                               std::shared_ptr<IZoomOverrideMgr> const& mgr,
                                               int32_t logLevel) {
    switch (mode) {
        case ZoomOverrideMode::ExternalAPI:
            return std::make_unique<ZoomOverrideExternalAPI>(mgr, logLevel);
        case ZoomOverrideMode::ByRequest:
            return std::make_unique<ZoomOverrideByRequest>(mgr, logLevel);
        case ZoomOverrideMode::InstantRequest:
            return std::make_unique<ZoomOverrideInstantRequest>(mgr, logLevel);
        case ZoomOverrideMode::None:
            break;
    }
    return nullptr;  // also for values that pipelines make up
}

/// What the manager forwards to the strategy of a mode; in others it ignores it.
struct Forwarded {
    bool sensors;
    bool metadata;
    bool settings;
};

constexpr Forwarded forwardedIn(ZoomOverrideMode mode) {
    switch (mode) {
        case ZoomOverrideMode::ExternalAPI:
            return {.sensors = true, .metadata = false, .settings = false};
        case ZoomOverrideMode::ByRequest:
            return {.sensors = false, .metadata = false, .settings = true};
        case ZoomOverrideMode::InstantRequest:
            return {.sensors = false, .metadata = true, .settings = false};
        case ZoomOverrideMode::None:
            break;
    }
    return {};
}

/// The answer of a manager without a strategy. What else the need holds stays the caller's.
bool answerWithoutStrategy(ZoomOverrideNeedHeader& need) {
    need.overrideValid = false;
    need.mode = ZoomOverrideMode::None;
    return false;
}

/// The process's manager, and what getInstance locks.
struct InstanceHolder {
    std::mutex lock;
    std::shared_ptr<IZoomOverrideMgr> instance;
};

/// Lets go of the manager when the library is unloaded or the process ends.
class InstanceReleaser {
 public:
    explicit InstanceReleaser(InstanceHolder& holder) : mHolder(holder) {}
    InstanceReleaser(InstanceReleaser const&) = delete;
    InstanceReleaser& operator=(InstanceReleaser const&) = delete;
    ~InstanceReleaser() {
        std::shared_ptr<IZoomOverrideMgr>
            last;  // outlives the lock: its strategy may be customers'
        std::lock_guard const guard(mHolder.lock);
        last.swap(mHolder.instance);
    }

 private:
    InstanceHolder& mHolder;
};

/// @return empty when it cannot be made.
std::shared_ptr<IZoomOverrideMgr> makeManager() {
    try {
        return std::make_shared<ZoomOverrideMgr>();
    } catch (std::exception const&) {
        return nullptr;
    }
}

}  // namespace

std::shared_ptr<IZoomOverrideMgr> IZoomOverrideMgr::getInstance() {
    // Other objects of the process may ask while they are destroyed at its end, in any order: the
    // holder is never destroyed, only what it holds is released on the way.
    alignas(InstanceHolder) static std::byte storage[sizeof(InstanceHolder)];
    static auto& holder = *new (storage) InstanceHolder;
    static InstanceReleaser const releaser(holder);

    std::lock_guard const guard(holder.lock);
    if (!holder.instance) {
        holder.instance = makeManager();
    }
    if (!holder.instance) {
        ZLOG_ABORT_PLAIN("create ZoomOverrideMgr fail");
    }
    return holder.instance;
}

ZoomOverrideMgr::ZoomOverrideMgr() {
    ZLOG_DEBUG("[Zoom Override]: create instance +");
    // Taken under getInstance's lock, while initialize takes the two the other way round. Nobody
    // else can hold it yet, so the attempt succeeds; an attempt cannot deadlock, and lock-order
    // checkers know that.
    std::unique_lock const guard(mLock, std::try_to_lock);
    using Utils::Properties;
    mLogLevel = Properties::property_get_int32(kLogLevelProperty, 0);
    mCloseP1Override = Properties::property_get_int32(kCloseP1Property, 0);
    mCloseP2Override = Properties::property_get_int32(kCloseP2Property, 0);
    ZLOG_DEBUG("[Zoom Override]: create instance - logLevel:%d", mLogLevel);
}

bool ZoomOverrideMgr::initialize(ZoomOverrideMode mode) {
    std::shared_ptr<ZoomOverrideSetting> dropped;  // outlives the lock: pipelines supply deleters
    std::lock_guard const guard(mLock);
    // Strategies call back into the shared instance, whatever object this is.
    auto const mgr = getInstance();

    mRunTimeCropNeedData.clear();
    mP1Cache.clear();
    mSensorPortSizes.clear();
    mLastRunTimeCropNeedData.reset();
    mSensorSizeCache.clear();
    dropped.swap(mKeptSetting);

    // A customer's mapper may throw while it is made: that leaves a manager without a strategy.
    mMode = ZoomOverrideMode::None;
    auto former = std::move(mStrategy);
    mStrategy = makeStrategy(mode, mgr, mLogLevel);
    mMode = mode;
    former.reset();
    ZLOG_DEBUG("[Zoom Override] ZoomOverride Mode: %d ", static_cast<int32_t>(mMode));
    return true;
}

ZoomOverrideMode ZoomOverrideMgr::getZoomOverrideMode() {
    std::lock_guard const guard(mLock);
    return mStrategy ? mStrategy->getZoomOverrideMode() : ZoomOverrideMode::None;
}

bool ZoomOverrideMgr::configFspInfo(ZoomOverrideFspInfoConfig const& config) {
    std::lock_guard const guard(mLock);
    if (forwardedIn(mMode).sensors) {
        mStrategy->configFspInfo(config);
    }
    return true;
}

bool ZoomOverrideMgr::configSensorInfo(ZoomOverrideSensorInfoConfig const& config) {
    std::lock_guard const guard(mLock);
    if (forwardedIn(mMode).sensors) {
        mStrategy->configSensorInfo(config);
    }
    return true;
}

bool ZoomOverrideMgr::configSensorBehaviorInfo(ZoomOverrideSensorBehaviorInfoConfig const& config) {
    std::lock_guard const guard(mLock);
    mSensorPortSizes = config.portSizes;
    return true;
}

bool ZoomOverrideMgr::storeOverrideSetting(
    IMetadata const* metadata, std::unordered_map<uint32_t, uint64_t> const& streamIdMap) {
    std::lock_guard const guard(mLock);
    if (forwardedIn(mMode).metadata) {
        mStrategy->storeOverrideSetting(metadata, streamIdMap);
    }
    return true;
}

bool ZoomOverrideMgr::storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                                           std::shared_ptr<ZoomOverrideSetting> setting) {
    std::shared_ptr<ZoomOverrideSetting> replaced;  // as in initialize
    std::lock_guard const guard(mLock);
    if (forwardedIn(mMode).settings) {
        mStrategy->storeOverrideSetting(requestNo, notice, setting);
        if (notice != OverrideNotice::Repeating) {
            replaced = std::exchange(mKeptSetting, std::move(setting));
        }
    }
    return true;
}

bool ZoomOverrideMgr::getP1CropSetting(ZoomOverrideRequest const& request,
                                       ZoomOverrideP1Need& need) {
    std::lock_guard const guard(mLock);
    if (mCloseP1Override != 0) {
        return false;
    }
    ZLOG_DEBUG("meta req %d, ratio %.2f sensorId:%d!!", request.requestNo, request.zoomRatio,
               request.sensorId);

    if (auto const* const cached = mP1Cache.find(request.requestNo)) {
        ZLOG_TRACE("requestNo:%d sensorId:%d use zoom override cached", request.requestNo,
                   request.sensorId);
        copyNeed(cached->second, need);
        return cached->first;
    }
    if (!mStrategy) {
        return answerWithoutStrategy(need);
    }
    bool const overridden = mStrategy->getP1CropSetting(request, need);
    mP1Cache.keep(request.requestNo, overridden, need);
    return overridden;
}

bool ZoomOverrideMgr::getP2CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP2Need& need,
                                       bool manual) {
    std::lock_guard const guard(mLock);
    if (mCloseP2Override != 0) {
        return false;
    }
    ZLOG_DEBUG("meta req %d, ratio %.2f!!", request.requestNo, request.zoomRatio);
    return mStrategy ? mStrategy->getP2CropSetting(request, need, manual)
                     : answerWithoutStrategy(need);
}

bool ZoomOverrideMgr::get3ACropSetting(ZoomOverrideRequest const& request,
                                       ZoomOverride3ANeed& need) {
    std::lock_guard const guard(mLock);
    ZLOG_DEBUG("meta req %d, ratio %.2f!!", request.requestNo, request.zoomRatio);
    if (!mStrategy) {
        return answerWithoutStrategy(need);
    }
    mStrategy->get3ACropSetting(request, need);
    return true;
}

bool ZoomOverrideMgr::setRunTimeCropNeedData(uint32_t requestNo, OverrideNotice notice,
                                             RunTimeCropNeedData&& data) {
    std::lock_guard const guard(mLock);
    ZLOG_TRACE("[Zoom Override] req %d, Notice:%s", requestNo, toText(notice));
    if (notice == OverrideNotice::Repeating) {
        ZLOG_TRACE("[Zoom Override][Repeating] req %d, keep last data", requestNo);
        if (!mLastRunTimeCropNeedData) {
            ZLOG_FATAL("null previous runtime data, may be OverrideNotice get wrong?");
        }
    } else {
        // Copied, not moved: pipelines go on using the record that they hand in.
        mLastRunTimeCropNeedData = std::make_shared<RunTimeCropNeedData>(data);
    }
    mRunTimeCropNeedData[requestNo] = mLastRunTimeCropNeedData;
    return true;
}

bool ZoomOverrideMgr::onRequestDone(uint32_t requestNo) {
    std::lock_guard const guard(mLock);
    ZLOG_TRACE("req %d request Done, remove runtime crop data(%lu), p1 cached(%lu)", requestNo,
               static_cast<unsigned long>(mRunTimeCropNeedData.size()),
               static_cast<unsigned long>(mP1Cache.size()));
    mRunTimeCropNeedData.erase(requestNo);
    mP1Cache.forget(requestNo);
    if (mStrategy) {
        mStrategy->onRequestDone(requestNo);
    }
    return true;
}

std::shared_ptr<RunTimeCropNeedData> ZoomOverrideMgr::getHistoryCropNeedData(int32_t requestNo) {
    auto const entry = mRunTimeCropNeedData.find(static_cast<uint32_t>(requestNo));
    if (entry == mRunTimeCropNeedData.end() || !entry->second) {
        ZLOG_FATAL("req(%d) not exist", requestNo);
    }
    ZLOG_DEBUG("reqNo:%d CropNeedDataPtr:%p", requestNo,
               static_cast<void const*>(entry->second.get()));
    return entry->second;
}

bool ZoomOverrideMgr::isPortExist(int32_t sensorId, int32_t port) {
    auto const sensor = mSensorPortSizes.find(static_cast<uint32_t>(sensorId));
    return sensor != mSensorPortSizes.end() &&
           sensor->second.count(static_cast<uint8_t>(static_cast<uint32_t>(port) & 0xFFU)) != 0;
}

bool ZoomOverrideMgr::correctTgCropRegion(int32_t sensorId, int32_t sensorMode, bool checkMinSize,
                                          MSize minSize, MRect& crop) {
    MSize const sensor = sensorSize(sensorId, sensorMode);
    ZLOG_DEBUG("sensorId:%d sensorMode:%d originalTgCrop:(%d,%d)(%dx%d)", sensorId, sensorMode,
               crop.x, crop.y, crop.w, crop.h);

    if (exceeds(crop, sensor)) {
        ZLOG_WARNING("sensorId:%d sensorMode:%d  crop > maxSize crop: %dx%d maxSize:%dx%d",
                     sensorId, sensorMode, crop.w, crop.h, sensor.w, sensor.h);
        shrinkToSensor(crop, sensor);
        ZLOG_DEBUG("sensorId:%d sensorMode:%d max size correctedTgCrop:(%d,%d)(%dx%d)", sensorId,
                   sensorMode, crop.x, crop.y, crop.w, crop.h);
    }

    if (checkMinSize) {
        if (fallsShortOf(crop, minSize)) {
            ZLOG_WARNING("sensorId:%d sensorMode:%d : crop < minSize crop %dx%d minSize:%dx%d",
                         sensorId, sensorMode, crop.w, crop.h, minSize.w, minSize.h);
            growToMinSize(crop, minSize, sensor);
        }
        ZLOG_DEBUG("sensorId:%d sensorMode:%d min size correctedTgCrop:(%d,%d)(%dx%d)", sensorId,
                   sensorMode, crop.x, crop.y, crop.w, crop.h);
    }

    auto const crossed = moveInside(crop, sensor);
    if ((crossed & kLeftEdge) != 0) {
        ZLOG_WARNING("sensorId:%d sensorMode:%d : point x < 0 fix to left", sensorId, sensorMode);
    }
    if ((crossed & kTopEdge) != 0) {
        ZLOG_WARNING("sensorId:%d sensorMode:%d : point y < 0 fix to top", sensorId, sensorMode);
    }
    if ((crossed & kRightEdge) != 0) {
        ZLOG_WARNING("sensorId:%d sensorMode:%d : width out of bound fix to right", sensorId,
                     sensorMode);
    }
    if ((crossed & kBottomEdge) != 0) {
        ZLOG_WARNING("sensorId:%d sensorMode:%d : height out of bound fix to bottom", sensorId,
                     sensorMode);
    }
    ZLOG_DEBUG("sensorId:%d sensorMode:%d correctedTgCrop:(%d,%d)(%dx%d)", sensorId, sensorMode,
               crop.x, crop.y, crop.w, crop.h);
    return true;
}

MSize ZoomOverrideMgr::sensorSize(int32_t sensorId, int32_t sensorMode) {
    auto const sensor = mSensorSizeCache.find(static_cast<uint32_t>(sensorId));
    if (sensor != mSensorSizeCache.end()) {
        if (auto const mode = sensor->second.find(sensorMode); mode != sensor->second.end()) {
            return mode->second;
        }
    }
    return askSensorSize(sensorId, sensorMode);
}

MSize ZoomOverrideMgr::askSensorSize(int32_t sensorId, int32_t sensorMode) {
    MSize size;
    auto const helper = utility::ICamsysSensorInfoHelper::getInstance();
    if (!helper) {
        ZLOG_FATAL_FOR(kCorrectTgCropRegion, "CamsysSensorInfoHelper not found");
    }
    if (!helper->getSensorSize(sensorId, sensorMode, size)) {
        ZLOG_FATAL_FOR(kCorrectTgCropRegion,
                       "CamsysSensorInfoHelper getSensorSize Failed sensorId %d ,sensorMode %d",
                       sensorId, sensorMode);
    }
    mSensorSizeCache[static_cast<uint32_t>(sensorId)][sensorMode] = size;
    return size;
}

}  // namespace NSCam::Feature
