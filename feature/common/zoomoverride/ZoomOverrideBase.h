// The common base of the override strategies.
#pragma once

#include <string>

#include "IZoomOverrideMgr.h"

namespace NSCam::Feature {

/// What the manager forwards to the strategy in place, always under its lock: strategies need none.
/// The operations are those of IZoomOverrideMgr with the same names.
///
/// Each default is a trap: a strategy that is asked for what it does not implement is driven in the
/// wrong mode, and the process ends with a message that says so.
class ZoomOverrideBase {
 public:
    ZoomOverrideBase() = default;
    virtual ~ZoomOverrideBase() = default;
    ZoomOverrideBase(ZoomOverrideBase const&) = delete;
    ZoomOverrideBase& operator=(ZoomOverrideBase const&) = delete;

    virtual bool configFspInfo(ZoomOverrideFspInfoConfig const& config);
    virtual bool configSensorInfo(ZoomOverrideSensorInfoConfig const& config);
    virtual bool getP1CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP1Need& need);
    virtual bool getP2CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP2Need& need,
                                  bool manual);
    virtual bool get3ACropSetting(ZoomOverrideRequest const& request, ZoomOverride3ANeed& need);
    virtual bool storeOverrideSetting(IMetadata const* metadata,
                                      std::unordered_map<uint32_t, uint64_t> const& streamIdMap);
    virtual bool storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                                      std::shared_ptr<ZoomOverrideSetting> setting);
    virtual bool onRequestDone(uint32_t requestNo);
    virtual ZoomOverrideMode getZoomOverrideMode();

 private:
    std::string mName = "Base";
};

}  // namespace NSCam::Feature
