// The traps behind operations that a strategy does not implement. The messages are what people
// search their logs for: they stay as they are, letter by letter.
#include "ZoomOverrideBase.h"

#include "LogLines.h"

namespace NSCam::Feature {

bool ZoomOverrideBase::configFspInfo(ZoomOverrideFspInfoConfig const&) {
    ZLOG_FATAL("[Zoom Override] no Implement please check ZoomOverrideMode");
}

bool ZoomOverrideBase::configSensorInfo(ZoomOverrideSensorInfoConfig const&) {
    ZLOG_FATAL("[Zoom Override] no Implement please check ZoomOverrideMode");
}

bool ZoomOverrideBase::getP1CropSetting(ZoomOverrideRequest const&, ZoomOverrideP1Need&) {
    ZLOG_FATAL("[Zoom Override] no Implement please check ZoomOverrideMode");
}

bool ZoomOverrideBase::getP2CropSetting(ZoomOverrideRequest const&, ZoomOverrideP2Need&, bool) {
    ZLOG_FATAL("[Zoom Override] no Implement please check ZoomOverrideMode");
}

bool ZoomOverrideBase::get3ACropSetting(ZoomOverrideRequest const&, ZoomOverride3ANeed&) {
    ZLOG_FATAL("[Zoom Override] no Implement please check ZoomOverrideMode");
}

bool ZoomOverrideBase::storeOverrideSetting(IMetadata const*,
                                            std::unordered_map<uint32_t, uint64_t> const&) {
    ZLOG_FATAL(
        "[Zoom Override] no Implement please check ZoomOverrideMode, this only "
        "IntantRequestMethod");
}

bool ZoomOverrideBase::storeOverrideSetting(
    uint32_t, OverrideNotice,
    std::shared_ptr<ZoomOverrideSetting>) {  // NOLINT(performance-unnecessary-value-param)
    ZLOG_FATAL(
        "[Zoom Override] no Implement please check ZoomOverrideMode,thisonly by ByRequestMethod");
}

bool ZoomOverrideBase::onRequestDone(uint32_t) {
    ZLOG_FATAL("[Zoom Override] no Implement please check ZoomOverrideMode");
}

ZoomOverrideMode ZoomOverrideBase::getZoomOverrideMode() {
    ZLOG_FATAL("[Zoom Override] no Implement please check ZoomOverrideMode");
}

}  // namespace NSCam::Feature
