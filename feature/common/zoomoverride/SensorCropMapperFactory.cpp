// The choice between the customer's sensor crop mapper and the default one.
#include "CustomSensorCropMapper.h"
#include "ISensorCropMapperFactory.h"
#include "LogLines.h"
#include "SensorCropMapper.h"

namespace NSCam::Feature {

std::shared_ptr<ISensorCropMapper> ISensorCropMapperFactory::createSensorCropMapperInstance(
    CreationParams const& params) {
    SensorCropMapperInit const init;
    auto custom = std::make_shared<CustomSensorCropMapper>(params, "Custom");
    if (custom->initialize(init)) {
        ZLOG_INFO_PLAIN("create CustomSensorCropMapper(%p) successfully!!",
                        static_cast<void const*>(custom.get()));
        return custom;
    }

    auto mapper = std::make_shared<SensorCropMapper>(params, "QVX");
    custom.reset();
    if (!mapper->initialize(init)) {
        return nullptr;
    }
    ZLOG_INFO_PLAIN("create SensorCropMapper(%p) successfully",
                    static_cast<void const*>(mapper.get()));
    return mapper;
}

}  // namespace NSCam::Feature
