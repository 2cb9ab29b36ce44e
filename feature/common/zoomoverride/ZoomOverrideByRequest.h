// By-request mode: the pipeline hands over complete override settings, each for one request.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "HwTransHelper.h"
#include "ZoomOverrideBase.h"

namespace NSCam::Feature {

/// Keeps the latest setting and answers every query from it. Settings run ahead of their requests:
/// a setting applies to the requests before its own.
class ZoomOverrideByRequest : public ZoomOverrideBase {
 public:
    ZoomOverrideByRequest(std::shared_ptr<IZoomOverrideMgr> const& mgr, int32_t logLevel);

    /// Fills the header from the kept setting; never overrides P1. @return false.
    bool getP1CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP1Need& need) override;
    bool getP2CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP2Need& need,
                          bool manual) override;
    bool get3ACropSetting(ZoomOverrideRequest const& request, ZoomOverride3ANeed& need) override;

    using ZoomOverrideBase::storeOverrideSetting;
    bool storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                              std::shared_ptr<ZoomOverrideSetting> setting) override;

    bool onRequestDone(uint32_t requestNo) override;
    ZoomOverrideMode getZoomOverrideMode() override;

    /// The transform from the TG domain of one sensor mode to that of another.
    /// @param matrix written in any case.
    /// @return false when the platform lacks one of the two modes.
    bool getTransformMatrix(int32_t sensorId, int32_t targetMode, int32_t sourceMode,
                            NSCamHW::simplifiedMatrix& matrix) const;

 private:
    /// The kept setting; the process ends without one, in the name of operation.
    ZoomOverrideSetting const& keptSetting(char const* operation) const;

    /// Whether the setting applies to a P2 query.
    bool canOverrideP2(ZoomOverrideSetting const& setting, ZoomOverrideRequest const& request,
                       bool manual) const;

    /// Answers from an entry of mP2Cache, which is used up. @return whether there was one.
    bool takeCachedP2(uint32_t requestNo, ZoomOverrideP2Need& need);

    /// Fills need from the setting, with a TG crop for each crop of a streaming sensor.
    void overrideP2(ZoomOverrideSetting const& setting, ZoomOverrideRequest const& request,
                    ZoomOverrideP2Need& need) const;

    std::string mName = "ByRequest";
    std::weak_ptr<IZoomOverrideMgr> mMgr;
    std::shared_ptr<ZoomOverrideSetting> mOverrideSetting;  // shared with the pipeline

 protected:
    /// P2 answers by request number, each good for one query that the setting does not override.
    /// Nothing in the module fills it; open to a class that derives from the strategy.
    std::map<uint32_t, ZoomOverrideP2Need> mP2Cache;

 private:
    int32_t mLogLevel;
};

}  // namespace NSCam::Feature
