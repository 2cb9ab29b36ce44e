// Makes of an answer the crops that reports and traces show.
#pragma once

#include <optional>
#include <vector>

#include "ReplayedRequest.h"
#include "steps/Explained.h"

namespace zoomreplay {

/// What is known of a request while one of its answers is taken in.
struct CropContext {
    Rig const& rig;
    NSCam::Feature::RunTimeCropNeedData const* data;  ///< null without a deposit
    NSCam::Feature::ZoomOverrideMode mode;
    Explained const& explained;
};

std::vector<ReplayedCrop> replayedCrops(CropContext const& context,
                                        NSCam::Feature::ZoomOverrideP1Need const& need);
std::vector<ReplayedCrop> replayedCrops(CropContext const& context,
                                        NSCam::Feature::ZoomOverrideP2Need const& need);

}  // namespace zoomreplay
