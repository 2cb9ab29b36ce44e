// Lines that set up the host platform.
#include <array>
#include <memory>
#include <optional>
#include <string>

#include "CustomZoomRatioOverride.h"
#include "DebugWrapper.h"
#include "IGenericContainer.h"
#include "Library.h"
#include "Operations.h"
#include "ULogger.h"
#include "ZoomOverrideContract.h"
#include "host/LogSwitches.h"
#include "host/PropertyStore.h"
#include "host/SensorTable.h"
#include "scenario/json/Records.h"

namespace zoomreplay {

using namespace scenario;
using namespace NSCam;

namespace {

std::optional<Answer> property(Fields& fields, Library& /*library*/) {
    std::string name;
    int32_t value = 0;
    fields.required("name", name);
    fields.required("value", value);
    fields.finish();

    Host::setProperty(name, value);
    return std::nullopt;
}

std::optional<Answer> logger(Fields& fields, Library& /*library*/) {
    using Utils::ULog::ULogger;
    uint32_t mode = ULogger::sMode;
    int32_t detailsLevel = ULogger::sDetailsLevel;
    uint32_t mask = ULogger::sNormalDetailsMask;
    std::map<uint8_t, bool> levels;
    fields.optional("mode", mode);
    fields.optional("detailsLevel", detailsLevel);
    fields.optional("normalDetailsMask", mask);
    fields.optional("levels", levels);
    fields.finish();
    if (!levels.empty() && levels.rbegin()->first >= kLogLevelCount) {
        fields.fail("levels: there is no level " + std::to_string(levels.rbegin()->first));
    }

    ULogger::sMode = mode;
    ULogger::sDetailsLevel = detailsLevel;
    ULogger::sNormalDetailsMask = mask;
    for (auto const& [level, on] : levels) {
        Host::setPrintLevel(level, on);
    }
    return std::nullopt;
}

std::optional<Answer> sensor(Fields& fields, Library& library) {
    int32_t id = 0;
    Host::SensorModes modes;
    fields.required("id", id);
    fields.required("modes", modes);
    fields.finish();

    library.announce(SensorInput{id, modes});
    Host::setSensor(id, std::move(modes));
    return std::nullopt;
}

std::optional<Answer> publish(Fields& fields, Library& library) {
    using Container = IGenericContainer<std::shared_ptr<v3::CustomZoomRatioOverride>>;
    auto entry = std::make_shared<v3::CustomZoomRatioOverride>();
    readFields(fields, *entry);
    fields.finish();

    library.announce(PublishInput{*entry});
    static auto const kWriter = Container::createWriter(
        Feature::kCustomZoomContainer, Feature::kCustomZoomCapacity, Feature::kCustomZoomFlags);
    kWriter->publish(std::move(entry));
    return std::nullopt;
}

template <typename T>
void readOptional(Fields& fields, std::string_view name, std::optional<T>& result) {
    T value{};
    if (fields.optional(name, value)) {
        result = std::move(value);
    }
}

// For those who follow the replay only.
std::optional<Answer> observed(Fields& fields, Library& library) {
    Observation observation;
    fields.required("requestNo", observation.requestNo);
    readOptional(fields, "zoomRatio", observation.zoomRatio);
    readOptional(fields, "cropRegion", observation.cropRegion);
    readOptional(fields, "activePhysicalId", observation.activePhysicalId);
    fields.finish();

    library.announce(ObservedInput{observation});
    return std::nullopt;
}

constexpr std::array kPlatformOperations{
    Operation{"property", property}, Operation{"logger", logger},     Operation{"sensor", sensor},
    Operation{"publish", publish},   Operation{"observed", observed},
};

}  // namespace

std::span<Operation const> platformOperations() {
    return kPlatformOperations;
}

}  // namespace zoomreplay
