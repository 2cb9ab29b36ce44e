// The customer's mapper where there is no customer: it refuses, and the factory takes the default
// mapper.
#include "CustomSensorCropMapper.h"

namespace NSCam::Feature {

struct CustomSensorCropMapper::Impl {};

CustomSensorCropMapper::CustomSensorCropMapper(
    ISensorCropMapperFactory::CreationParams const& /*params*/, char const* /*name*/) {}

CustomSensorCropMapper::~CustomSensorCropMapper() = default;

bool CustomSensorCropMapper::initialize(SensorCropMapperInit const& /*init*/) {
    return false;
}

bool CustomSensorCropMapper::config(SensorCropMapperConfig const& /*config*/) {
    return false;
}

bool CustomSensorCropMapper::getSensorCrop(SensorCropInput const& /*in*/,
                                           SensorCropOutput& /*out*/) {
    return false;
}

}  // namespace NSCam::Feature
