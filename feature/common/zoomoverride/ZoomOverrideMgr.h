// The manager: owns the strategy, the per-request history, the P1 cache and the correction of TG
// crops.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>

#include "IZoomOverrideMgr.h"
#include "P1Cache.h"
#include "ZoomOverrideBase.h"

namespace NSCam::Feature {

/// Made by IZoomOverrideMgr::getInstance only. What the operations do is said there.
///
/// mLock guards every member and is held for the whole of every operation, the strategy's part
/// included; the three call-backs at the end take no lock, as the strategy calls them under it.
class ZoomOverrideMgr final : public IZoomOverrideMgr {
 public:
    ZoomOverrideMgr();
    ~ZoomOverrideMgr() override = default;
    ZoomOverrideMgr(ZoomOverrideMgr const&) = delete;
    ZoomOverrideMgr& operator=(ZoomOverrideMgr const&) = delete;

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
    /// The output size of a sensor mode, asked of the platform once.
    MSize sensorSize(int32_t sensorId, int32_t sensorMode);

    /// Asks the platform, and keeps the answer. The process ends when the platform has none.
    [[gnu::cold]] MSize askSensorSize(int32_t sensorId, int32_t sensorMode);

    std::mutex mLock;
    std::string mName = "ZoomOverrideMgr";
    int32_t mLogLevel = 0;
    int32_t mCloseP1Override = 0;
    int32_t mCloseP2Override = 0;
    ZoomOverrideMode mMode = ZoomOverrideMode::None;  // as asked for, known or not
    std::unique_ptr<ZoomOverrideBase> mStrategy;

    // Held beside the strategy, so that a setting which is replaced dies after the lock is
    // released: its deleter is the pipeline's and may call the manager.
    std::shared_ptr<ZoomOverrideSetting> mKeptSetting;

    // Answers by request number alone: the first answer for a request holds for all its sensors.
    P1Cache mP1Cache;

    std::map<uint32_t, std::shared_ptr<RunTimeCropNeedData>> mRunTimeCropNeedData;
    std::shared_ptr<RunTimeCropNeedData> mLastRunTimeCropNeedData;  // what repeating requests share
    std::unordered_map<uint32_t, std::map<uint8_t, MSize>> mSensorPortSizes;
    std::unordered_map<uint32_t, std::map<int32_t, MSize>> mSensorSizeCache;
};

}  // namespace NSCam::Feature
