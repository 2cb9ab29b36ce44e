// Records the calls of a pipeline as lines of a scenario, each with what the platform is about to
// answer in it.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "PartWriter.h"
#include "PlatformWatch.h"
#include "Settings.h"
#include "ZoomOverrideTypes.h"

namespace NSCam {
class IMetadata;
}

namespace zoomrecorder {

/// One operation for each of the manager's, called just before it with the same arguments. One
/// thread at a time.
class CallRecorder {
 public:
    /// Begins the record; must come before the manager is created.
    explicit CallRecorder(Settings const& settings);

    bool hasFailed() const { return mParts.hasFailed(); }
    void giveUp(std::string const& why) { mParts.giveUp(why); }

    /// How long the call took that was recorded last.
    void noteDuration(int64_t nanoseconds) { mParts.noteDuration(nanoseconds); }

    void configFspInfo(NSCam::Feature::ZoomOverrideFspInfoConfig const& config);
    void configSensorInfo(NSCam::Feature::ZoomOverrideSensorInfoConfig const& config);
    void configSensorBehaviorInfo(
        NSCam::Feature::ZoomOverrideSensorBehaviorInfoConfig const& config);
    void getP1CropSetting(NSCam::Feature::ZoomOverrideRequest const& request,
                          NSCam::Feature::ZoomOverrideP1Need const& need);
    void getP2CropSetting(NSCam::Feature::ZoomOverrideRequest const& request,
                          NSCam::Feature::ZoomOverrideP2Need const& need, bool manual);
    void get3ACropSetting(NSCam::Feature::ZoomOverrideRequest const& request,
                          NSCam::Feature::ZoomOverride3ANeed const& need);
    void storeOverrideSetting(NSCam::IMetadata const* metadata,
                              std::unordered_map<uint32_t, uint64_t> const& streamIdMap);
    void storeOverrideSetting(uint32_t requestNo, NSCam::Feature::OverrideNotice notice,
                              NSCam::Feature::ZoomOverrideSetting const* setting);
    void onRequestDone(uint32_t requestNo);
    void getZoomOverrideMode();
    void initialize(NSCam::Feature::ZoomOverrideMode mode);
    void setRunTimeCropNeedData(uint32_t requestNo, NSCam::Feature::OverrideNotice notice,
                                NSCam::Feature::RunTimeCropNeedData const& data);
    void getHistoryCropNeedData(int32_t requestNo);
    void isPortExist(int32_t sensorId, int32_t port);
    void correctTgCropRegion(int32_t sensorId, int32_t sensorMode, bool checkMinSize,
                             NSCam::MSize minSize, NSCam::MRect const& crop);

 private:
    template <typename Write>
    void add(LineSubject subject, char const* op, Write write);

    template <typename Need>
    void addQuery(LineKind kind, char const* op, NSCam::Feature::ZoomOverrideRequest const& request,
                  Need const& need, bool manual);

    PartWriter mParts;
    PlatformWatch mPlatform;
    NSCam::Feature::ZoomOverrideMode mMode = NSCam::Feature::ZoomOverrideMode::None;
    std::string mLine;  // reused
};

}  // namespace zoomrecorder
