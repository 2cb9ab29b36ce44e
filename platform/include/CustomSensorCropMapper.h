// libqvxcam_custom_feature: the customer's sensor crop mapper. A customer's own build of that one
// library takes the place of the one shipped, so nothing else is in it.
#pragma once

#include <memory>

#include "ISensorCropMapperFactory.h"

namespace NSCam::Feature {

/// The mapper that the factory tries first. Callers construct it themselves: its size and its
/// virtual operations are part of the binary interface, and a customer's state goes into Impl.
class ZOOMOVERRIDE_API CustomSensorCropMapper : public ISensorCropMapper {
 public:
    /// @param name for the log; used during the call only.
    CustomSensorCropMapper(ISensorCropMapperFactory::CreationParams const& params,
                           char const* name);
    ~CustomSensorCropMapper() override;

    bool initialize(SensorCropMapperInit const& init) override;
    bool config(SensorCropMapperConfig const& config) override;
    bool getSensorCrop(SensorCropInput const& in, SensorCropOutput& out) override;

 private:
    struct Impl;
    std::unique_ptr<Impl> mImpl;
};

}  // namespace NSCam::Feature
