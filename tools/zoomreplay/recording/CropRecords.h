// Makes the crop records of an answer.
#pragma once

#include <optional>
#include <vector>

#include "AskedCrops.h"
#include "RequestRecord.h"

namespace zoomreplay {

/// What is known of a request while one of its answers is recorded.
struct CropContext {
    Rig const& rig;
    NSCam::Feature::RunTimeCropNeedData const* data;  ///< null without a deposit
    NSCam::Feature::ZoomOverrideMode mode;
    AskedCrops* asked;  ///< null where what the override asked for is not to be told
};

std::vector<CropRecord> cropRecords(CropContext const& context,
                                    NSCam::Feature::ZoomOverrideP1Need const& need);
std::vector<CropRecord> cropRecords(CropContext const& context,
                                    NSCam::Feature::ZoomOverrideP2Need const& need);

}  // namespace zoomreplay
