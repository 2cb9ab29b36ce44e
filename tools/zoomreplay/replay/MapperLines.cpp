// Lines that call a sensor crop mapper without the manager.
#include <array>
#include <utility>

#include "Library.h"
#include "Operations.h"
#include "scenario/json/Records.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam::Feature;

std::optional<Answer> config(Fields& fields, Library& library) {
    SensorCropMapperConfig sensors;
    readFields(fields, sensors);
    fields.finish();

    return library.callMapper(
        [&](ISensorCropMapper& mapper) { return BoolAnswer{mapper.config(sensors)}; });
}

std::optional<Answer> getSensorCrop(Fields& fields, Library& library) {
    MapperAnswer answer{};
    readFields(fields, answer.input);
    fields.optional("output", answer.output);
    fields.finish();

    return library.callMapper([&](ISensorCropMapper& mapper) {
        answer.result = mapper.getSensorCrop(answer.input, answer.output);
        return std::move(answer);
    });
}

constexpr std::array kMapperOperations{
    Operation{"SensorCropMapper.config", config},
    Operation{"SensorCropMapper.getSensorCrop", getSensorCrop},
};

}  // namespace

std::span<Operation const> mapperOperations() {
    return kMapperOperations;
}

}  // namespace zoomreplay
