// What a strategy works with during a crop query: its manager and the record of the request.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "IZoomOverrideMgr.h"

namespace NSCam::Feature {

/// Keeps the manager and the request's record alive for the duration of one query.
class QueryContext {
 public:
    /// Ends the process, in the name of strategy and operation, when the manager is gone or has no
    /// record of the request.
    QueryContext(std::weak_ptr<IZoomOverrideMgr> const& mgr, int32_t requestNo,
                 std::string const& strategy, char const* operation);

    IZoomOverrideMgr& mgr() const { return *mMgr; }
    RunTimeCropNeedData const& history() const { return *mHistory; }

    /// The mode of a sensor in the request, empty when the sensor does not stream.
    /// @throws std::out_of_range the record lacks the sensor.
    std::optional<uint32_t> streamingMode(uint32_t sensorId) const;

 private:
    std::shared_ptr<IZoomOverrideMgr> mMgr;
    std::shared_ptr<RunTimeCropNeedData const> mHistory;
};

}  // namespace NSCam::Feature
