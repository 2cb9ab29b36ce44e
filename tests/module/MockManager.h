// A manager for strategies that must see what the real one never gives them.
#pragma once

#include <gmock/gmock.h>

#include "IZoomOverrideMgr.h"

namespace NSCam::Feature {

class MockManager : public IZoomOverrideMgr {
 public:
    using StreamIds = std::unordered_map<uint32_t, uint64_t>;
    using Setting = std::shared_ptr<ZoomOverrideSetting>;
    using History = std::shared_ptr<RunTimeCropNeedData>;

    MOCK_METHOD(bool, configFspInfo, (ZoomOverrideFspInfoConfig const&), (override));
    MOCK_METHOD(bool, configSensorInfo, (ZoomOverrideSensorInfoConfig const&), (override));
    MOCK_METHOD(bool, getP1CropSetting, (ZoomOverrideRequest const&, ZoomOverrideP1Need&),
                (override));
    MOCK_METHOD(bool, getP2CropSetting, (ZoomOverrideRequest const&, ZoomOverrideP2Need&, bool),
                (override));
    MOCK_METHOD(bool, get3ACropSetting, (ZoomOverrideRequest const&, ZoomOverride3ANeed&),
                (override));
    MOCK_METHOD(bool, storeOverrideSetting, (IMetadata const*, StreamIds const&), (override));
    MOCK_METHOD(bool, storeOverrideSetting, (uint32_t, OverrideNotice, Setting), (override));
    MOCK_METHOD(bool, onRequestDone, (uint32_t), (override));
    MOCK_METHOD(ZoomOverrideMode, getZoomOverrideMode, (), (override));
    MOCK_METHOD(bool, initialize, (ZoomOverrideMode), (override));
    MOCK_METHOD(bool, configSensorBehaviorInfo, (ZoomOverrideSensorBehaviorInfoConfig const&),
                (override));
    MOCK_METHOD(bool, setRunTimeCropNeedData, (uint32_t, OverrideNotice, RunTimeCropNeedData&&),
                (override));
    MOCK_METHOD(History, getHistoryCropNeedData, (int32_t), (override));
    MOCK_METHOD(bool, isPortExist, (int32_t, int32_t), (override));
    MOCK_METHOD(bool, correctTgCropRegion, (int32_t, int32_t, bool, MSize, MRect&), (override));
};

}  // namespace NSCam::Feature
