// A customer's mapper that throws what it should not, whenever it is configured and for 8x and
// more, and crashes for 16x and more. Its crops tell for whom it was made.
#include <csignal>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include "CustomSensorCropMapper.h"

namespace NSCam::Feature {

struct CustomSensorCropMapper::Impl {
    bool isExternalApi;
};

CustomSensorCropMapper::CustomSensorCropMapper(
    ISensorCropMapperFactory::CreationParams const& params, char const* /*name*/)
    : mImpl(new Impl{params.externalApi}) {}

CustomSensorCropMapper::~CustomSensorCropMapper() = default;

bool CustomSensorCropMapper::initialize(SensorCropMapperInit const& /*init*/) {
    return true;
}

bool CustomSensorCropMapper::config(SensorCropMapperConfig const& /*config*/) {
    throw std::runtime_error("\u009B2Jno calibration\u202E");
}

bool CustomSensorCropMapper::getSensorCrop(SensorCropInput const& in, SensorCropOutput& out) {
    constexpr float kTooNarrow = 8.0F;
    constexpr float kMuchTooNarrow = 16.0F;
    constexpr float kBeyondAll = 32.0F;
    if (in.zoomRatio >= kBeyondAll) {
        std::_Exit(0);
    }
    if (in.zoomRatio >= kMuchTooNarrow) {
        static_cast<void>(std::raise(in.zoomRatio == kMuchTooNarrow ? SIGABRT : SIGSEGV));
    }
    if (in.zoomRatio >= kTooNarrow) {
        switch (static_cast<int>(in.zoomRatio)) {
            case 10:
                throw std::invalid_argument("10x");
            case 11:
                throw std::bad_alloc();
            case 12:
                throw std::exception();
            default:
                throw 42;
        }
    }
    out.isValid = true;
    out.zoomRatio = in.zoomRatio;
    int32_t const edge = mImpl->isExternalApi ? 100 : 0;
    out.sensorCrops[0] = {edge, edge, 1000, 750};
    return true;
}

}  // namespace NSCam::Feature
