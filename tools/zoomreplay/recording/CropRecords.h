// Makes the crop records of an answer.
#pragma once

#include <optional>
#include <vector>

#include "RequestRecord.h"
#include "steps/Explained.h"

namespace zoomreplay {

/// What is known of a request while one of its answers is recorded.
struct CropContext {
    Rig const& rig;
    NSCam::Feature::RunTimeCropNeedData const* data;  ///< null without a deposit
    NSCam::Feature::ZoomOverrideMode mode;
    Explained const& explained;
};

std::vector<CropRecord> cropRecords(CropContext const& context,
                                    NSCam::Feature::ZoomOverrideP1Need const& need);
std::vector<CropRecord> cropRecords(CropContext const& context,
                                    NSCam::Feature::ZoomOverrideP2Need const& need);

}  // namespace zoomreplay
