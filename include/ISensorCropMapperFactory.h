// The sensor crop mapper: turns one zoom ratio of a camera's master sensor into a crop for each of
// its sensors, so that all of them show the same field of view. Customers may supply their own.
#pragma once

#include "ZoomOverrideTypes.h"

namespace NSCam::Feature {

/// What a mapper is initialized with.
struct SensorCropMapperInit {
    int32_t initParam = 0;  ///< the factory passes 0
};

/// The sensors that a mapper works on. Same layout as ZoomOverrideSensorInfoConfig.
struct SensorCropMapperConfig {
    std::vector<int32_t> sensorIds;  ///< the first one is the master sensor

    /// By sensor id. Shared, not copied.
    std::unordered_map<uint32_t, std::shared_ptr<ZoomOverrideSensorInfo>> sensorInfos;
};

/// What a mapper is asked.
struct SensorCropInput {
    bool enable = false;     ///< the customer's override switch
    float zoomRatio = 0.0F;  ///< wanted for the master sensor: 1 is no zoom, 2 twice
};

/// What a mapper answers. Callers hand it in as constructed.
struct SensorCropOutput {
    bool isValid = false;    ///< the crops are to be applied
    float zoomRatio = 1.0F;  ///< the effective ratio of the master's crop

    /// Sensor id to crop, in that sensor's active-array coordinates.
    SensorCrops sensorCrops;
};

/// A mapper. Made by the factory, used by one strategy; implementations lock themselves.
/// The order of the virtual operations is part of the binary interface.
class ZOOMOVERRIDE_API ISensorCropMapper {
 public:
    virtual ~ISensorCropMapper() = default;

    /// Called once, before anything else. @return whether the mapper is willing to work.
    virtual bool initialize(SensorCropMapperInit const& init) = 0;

    /// Replaces the whole configuration. The infos are shared, not copied. @return success.
    virtual bool config(SensorCropMapperConfig const& config) = 0;

    /// Maps one zoom ratio. @return success; out.isValid says whether the crops are to be applied.
    virtual bool getSensorCrop(SensorCropInput const& in, SensorCropOutput& out) = 0;
};

/// Makes mappers.
class ZOOMOVERRIDE_API ISensorCropMapperFactory {
 public:
    /// What a mapper is made for.
    struct CreationParams {
        bool externalApi = false;  ///< set by the external-API strategy; handed to the mapper
    };

    /// Makes the customer's mapper, or the default one when the customer's refuses to initialize.
    /// @return a mapper ready to be configured; empty when both refuse. Any thread.
    static std::shared_ptr<ISensorCropMapper> createSensorCropMapperInstance(
        CreationParams const& params);
};

}  // namespace NSCam::Feature
