// The manager that pipelines get while the recorder is in front of the module: it writes each call
// down and hands it on to the real one.
#pragma once

#include <memory>
#include <mutex>
#include <utility>

#include "CallRecorder.h"
#include "IZoomOverrideMgr.h"

namespace zoomrecorder {

/// Answers what the real manager answers. Any thread: one lock makes the order of the lines the
/// order of the calls, as the manager's own lock would. A process forks while no call is under way;
/// the child's calls are answered, not recorded, as the record is its parent's.
class RecordingManager final : public NSCam::Feature::IZoomOverrideMgr {
 public:
    /// One a process, for good: it goes on watching for forks.
    RecordingManager(std::unique_ptr<CallRecorder> recorder,
                     std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> real);

    bool configFspInfo(NSCam::Feature::ZoomOverrideFspInfoConfig const& config) override;
    bool configSensorInfo(NSCam::Feature::ZoomOverrideSensorInfoConfig const& config) override;
    bool getP1CropSetting(NSCam::Feature::ZoomOverrideRequest const& request,
                          NSCam::Feature::ZoomOverrideP1Need& need) override;
    bool getP2CropSetting(NSCam::Feature::ZoomOverrideRequest const& request,
                          NSCam::Feature::ZoomOverrideP2Need& need, bool manual) override;
    bool get3ACropSetting(NSCam::Feature::ZoomOverrideRequest const& request,
                          NSCam::Feature::ZoomOverride3ANeed& need) override;
    bool storeOverrideSetting(NSCam::IMetadata const* metadata,
                              std::unordered_map<uint32_t, uint64_t> const& streamIdMap) override;
    bool storeOverrideSetting(
        uint32_t requestNo, NSCam::Feature::OverrideNotice notice,
        std::shared_ptr<NSCam::Feature::ZoomOverrideSetting> setting) override;
    bool onRequestDone(uint32_t requestNo) override;
    NSCam::Feature::ZoomOverrideMode getZoomOverrideMode() override;
    bool initialize(NSCam::Feature::ZoomOverrideMode mode) override;
    bool configSensorBehaviorInfo(
        NSCam::Feature::ZoomOverrideSensorBehaviorInfoConfig const& config) override;
    bool setRunTimeCropNeedData(uint32_t requestNo, NSCam::Feature::OverrideNotice notice,
                                NSCam::Feature::RunTimeCropNeedData&& data) override;
    std::shared_ptr<NSCam::Feature::RunTimeCropNeedData> getHistoryCropNeedData(
        int32_t requestNo) override;
    bool isPortExist(int32_t sensorId, int32_t port) override;
    bool correctTgCropRegion(int32_t sensorId, int32_t sensorMode, bool checkMinSize,
                             NSCam::MSize minSize, NSCam::MRect& crop) override;

 private:
    /// Answers what call does. Before that record runs, unless nothing is to be recorded.
    template <typename Record, typename Call>
    auto recorded(Record record, Call call);

    /// Records a line to which write adds the arguments.
    template <typename Write, typename Call>
    auto record(LineSubject subject, char const* op, Write write, Call call);

    template <typename Need, typename Call>
    auto recordQuery(LineKind kind, char const* op,
                     NSCam::Feature::ZoomOverrideRequest const& request, Need const& need,
                     bool manual, Call call);

    void noteOverride();

    static void beforeFork();
    static void afterForkInParent();
    static void afterForkInChild();

    std::recursive_mutex mLock;  // strategies call back
    bool mIsForwarding = false;
    bool mIsForkedChild = false;
    NSCam::Feature::ZoomOverrideMode mMode = NSCam::Feature::ZoomOverrideMode::None;
    std::unique_ptr<CallRecorder> const mRecorder;
    std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> const mReal;
};

}  // namespace zoomrecorder
