// Why an answer is what it is.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "CropPath.h"
#include "Told.h"

namespace zoomreplay {

struct Explained {
    /// Why crops were overridden, or why not.
    Saying reason;

    /// The line of the P1 answer that is given again; empty for a new one. The steps of a kept
    /// answer are those of the first.
    std::optional<uint64_t> keptSince;

    // The crops of the answer, as the library is expected to give them.
    std::map<uint32_t, std::map<uint16_t, CropPath>> ports;  ///< P1: by sensor id and port
    std::map<uint32_t, CropPath> streams;                    ///< P2: by sensor id
    std::map<uint32_t, CropPath> extras;                     ///< P2: the second crops
};

struct P1Question {
    NSCam::Feature::ZoomOverrideRequest const& request;
    NSCam::Feature::ZoomOverrideP1Need const& before;  ///< the caller's record before the call
    bool isOverridden;                                 ///< what the library answered
};

struct P2Question {
    NSCam::Feature::ZoomOverrideRequest const& request;
    NSCam::Feature::ZoomOverrideP2Need const& before;
    bool isManual;
    bool isOverridden;
};

Explained explain(Told& told, P1Question const& question);
Explained explain(Told& told, P2Question const& question);

}  // namespace zoomreplay
