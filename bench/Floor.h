// The floors: the least code that computes what the module answers. Written for the inputs of the
// rigs: nothing is checked, crops are far from the limits of their integers.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "CustomRatio.h"
#include "IGenericContainer.h"
#include "ISensorCropMapperFactory.h"
#include "Rig.h"

namespace Bench::Floor {

using NSCam::Feature::RunTimeCropNeedData;
using NSCam::Feature::SensorCropInput;
using NSCam::Feature::SensorCropMapperConfig;
using NSCam::Feature::SensorCropOutput;
using NSCam::Feature::ZoomOverrideP1Need;
using NSCam::Feature::ZoomOverrideP2Need;
using NSCam::Feature::ZoomOverrideRequest;
using NSCam::Feature::ZoomOverrideSetting;

/// Makes a TG crop fit an output size.
void fitTgCrop(MSize output, bool checkMinSize, MSize minSize, MRect& crop);

/// What is kept of a request's metadata.
struct InstantOverride {
    float zoomRatio = 0.0F;
    std::unordered_map<int64_t, MRect> crops;
};

void readMetadata(NSCam::IMetadata const& metadata,
                  std::unordered_map<uint32_t, uint64_t> const& streamIds, InstantOverride& kept);

bool instantP1(InstantOverride const& kept, RunTimeCropNeedData const& data,
               std::vector<MSize> const& outputs, ZoomOverrideRequest const& request,
               ZoomOverrideP1Need& need);

bool byRequestP1(ZoomOverrideSetting const& setting, ZoomOverrideP1Need& need);

bool byRequestP2(ZoomOverrideSetting const& setting, RunTimeCropNeedData const& data,
                 std::vector<MSize> const& outputs, ZoomOverrideRequest const& request,
                 ZoomOverrideP2Need& need);

void mapCrops(SensorCropMapperConfig const& config, SensorCropInput const& in,
              SensorCropOutput& out);

bool externalP1(CustomRatio::Reader const& reader, Rig const& rig,
                SensorCropMapperConfig const& config, RunTimeCropNeedData const& data,
                ZoomOverrideRequest const& request, ZoomOverrideP1Need& need);

bool externalP2(CustomRatio::Reader const& reader, Rig const& rig,
                SensorCropMapperConfig const& config, RunTimeCropNeedData const& data,
                ZoomOverrideRequest const& request, ZoomOverrideP2Need& need);

}  // namespace Bench::Floor
