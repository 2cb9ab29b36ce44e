// A customer's sensor crop mapper: whatever the ratio, each sensor shows the centre half of its
// array. Built alone into libqvxcam_custom_feature.so, it takes the place of the shipped library.
#include <mutex>

#include "CustomSensorCropMapper.h"

namespace NSCam::Feature {

struct CustomSensorCropMapper::Impl {
    std::mutex lock;
    std::unordered_map<uint32_t, std::shared_ptr<ZoomOverrideSensorInfo>> sensors;
};

CustomSensorCropMapper::CustomSensorCropMapper(
    ISensorCropMapperFactory::CreationParams const& /*params*/, char const* /*name*/)
    : mImpl(std::make_unique<Impl>()) {}

CustomSensorCropMapper::~CustomSensorCropMapper() = default;

bool CustomSensorCropMapper::initialize(SensorCropMapperInit const& /*init*/) {
    return true;
}

bool CustomSensorCropMapper::config(SensorCropMapperConfig const& config) {
    std::lock_guard const guard(mImpl->lock);
    mImpl->sensors = config.sensorInfos;
    return true;
}

bool CustomSensorCropMapper::getSensorCrop(SensorCropInput const& in, SensorCropOutput& out) {
    std::lock_guard const guard(mImpl->lock);
    for (auto const& [sensorId, info] : mImpl->sensors) {
        MRect const& array = info->activeArray;
        out.sensorCrops.try_emplace(sensorId, MRect{array.x + array.w / 4, array.y + array.h / 4,
                                                    array.w / 2, array.h / 2});
    }
    out.zoomRatio = 2.0F;
    out.isValid = in.enable;
    return true;
}

}  // namespace NSCam::Feature
