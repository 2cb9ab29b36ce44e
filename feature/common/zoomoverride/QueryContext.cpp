// The manager and the record of a query, and the end of the process without them.
#include "QueryContext.h"

#include "CheckedLookup.h"
#include "LogLines.h"

namespace NSCam::Feature {

QueryContext::QueryContext(std::weak_ptr<IZoomOverrideMgr> const& mgr, int32_t requestNo,
                           std::string const& strategy, char const* operation)
    : mMgr(mgr.lock()) {
    if (!mMgr) {
        ZLOG_ABORT_PLAIN_FOR(operation, "[%s::%s] [Zoom Override] the manager is gone",
                             strategy.c_str(), operation);
    }
    mHistory = mMgr->getHistoryCropNeedData(requestNo);
    if (!mHistory) {
        ZLOG_ABORT_PLAIN_FOR(operation, "[%s::%s] [Zoom Override] no history of req(%d)",
                             strategy.c_str(), operation, requestNo);
    }
}

std::optional<uint32_t> QueryContext::streamingMode(uint32_t sensorId) const {
    auto const mode = lookUp(mHistory->sensorModes, sensorId);
    return mode == kSensorNotStreaming ? std::nullopt : std::optional(mode);
}

}  // namespace NSCam::Feature
