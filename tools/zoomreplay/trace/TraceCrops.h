// The crops of an answer in a trace: as arguments and as counters.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "TraceEvents.h"
#include "recording/ReplayedCrops.h"

namespace zoomreplay {

/// A JSON array of the crops, each with what was asked for where the correction changed it.
std::string listOf(std::vector<ReplayedCrop> const& crops);

/// Counters of one value each, such as "sensor 0 P1 R1 width": width and centre in the pixels of
/// the crop's domain, and the horizontal angle of view in degrees where it is known, 0 where it is
/// known no more.
class CropCounters {
 public:
    /// @param events outlives the counters.
    explicit CropCounters(TraceEvents& events) : mEvents(events) {}

    /// The crops that a stage has from now on. Those that it had and has no more get the width 0,
    /// as a viewer holds a value until the next one.
    void show(Stage stage, std::vector<ReplayedCrop> const& crops, int64_t time);

 private:
    void show(std::string const& name, ReplayedCrop const& crop, int64_t time);

    TraceEvents& mEvents;
    std::map<Stage, std::set<std::string>> mShown;
    std::set<std::string> mWithAngle;
};

}  // namespace zoomreplay
