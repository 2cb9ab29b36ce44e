// The fields of each record that scenarios and results carry, described once: how a record is
// written, read and compared follows from it. A record with a field that is not described here does
// not compile.
#pragma once

#include <tuple>
#include <type_traits>

#include "CustomZoomRatioOverride.h"
#include "ISensorCropMapperFactory.h"
#include "ZoomOverrideTypes.h"
#include "scenario/text/Field.h"

namespace scenario {

namespace fields {

using namespace NSCam::Feature;

/// The description of a record, in the order in which its fields are written; null for what is no
/// record.
template <typename Record>
inline constexpr auto kOf = nullptr;

template <>
inline constexpr auto kOf<ZoomOverrideRequest> =
    describe<ZoomOverrideRequest>(required("requestNo", &ZoomOverrideRequest::requestNo),
                                  required("zoomRatio", &ZoomOverrideRequest::zoomRatio),
                                  optional("sensorId", &ZoomOverrideRequest::sensorId));

template <>
inline constexpr auto kOf<ZoomOverrideNeedHeader> = describe<ZoomOverrideNeedHeader>(
    optional("overrideValid", &ZoomOverrideNeedHeader::overrideValid),
    optional("requestNo", &ZoomOverrideNeedHeader::requestNo),
    optional("zoomRatio", &ZoomOverrideNeedHeader::zoomRatio),
    optional("mode", &ZoomOverrideNeedHeader::mode));

template <>
inline constexpr auto kOf<ZoomOverrideP1Need> = extend<ZoomOverrideP1Need>(
    kOf<ZoomOverrideNeedHeader>, optional("tgCrops", &ZoomOverrideP1Need::tgCrops));

template <>
inline constexpr auto kOf<ZoomOverrideP2Need> = extend<ZoomOverrideP2Need>(
    kOf<ZoomOverrideNeedHeader>, optional("overrideRect", &ZoomOverrideP2Need::overrideRect),
    optional("streamCrops", &ZoomOverrideP2Need::streamCrops),
    optional("extraTgCrops", &ZoomOverrideP2Need::extraTgCrops),
    optional("previewAaCrops", &ZoomOverrideP2Need::previewAaCrops),
    optional("extraAaCrops", &ZoomOverrideP2Need::extraAaCrops),
    hidden("trailingInfo", &ZoomOverrideP2Need::trailingInfo));

template <>
inline constexpr auto kOf<ZoomOverride3ANeed> =
    extend<ZoomOverride3ANeed>(kOf<ZoomOverrideNeedHeader>);

template <>
inline constexpr auto kOf<RunTimeCropNeedData> = describe<RunTimeCropNeedData>(
    optional("sensorModes", &RunTimeCropNeedData::sensorModes),
    optional("streamSizes", &RunTimeCropNeedData::streamSizes),
    optional("constraintStreams", &RunTimeCropNeedData::constraintStreams),
    optional("extraTable", &RunTimeCropNeedData::extraTable));

template <>
inline constexpr auto kOf<ZoomOverrideSetting> =
    describe<ZoomOverrideSetting>(optional("overrideValid", &ZoomOverrideSetting::overrideValid),
                                  optional("requestNo", &ZoomOverrideSetting::requestNo),
                                  optional("zoomRatio", &ZoomOverrideSetting::zoomRatio),
                                  optional("overrideRect", &ZoomOverrideSetting::overrideRect),
                                  optional("previewAaCrops", &ZoomOverrideSetting::previewAaCrops),
                                  optional("extraAaCrops", &ZoomOverrideSetting::extraAaCrops),
                                  hidden("trailingInfo", &ZoomOverrideSetting::trailingInfo));

template <>
inline constexpr auto kOf<ZoomOverrideFspInfoConfig> =
    describe<ZoomOverrideFspInfoConfig>(optional("fspPorts", &ZoomOverrideFspInfoConfig::fspPorts));

template <>
inline constexpr auto kOf<ZoomOverrideSensorInfo> =
    describe<ZoomOverrideSensorInfo>(optional("degreeH", &ZoomOverrideSensorInfo::degreeH),
                                     optional("degreeV", &ZoomOverrideSensorInfo::degreeV),
                                     optional("activeArray", &ZoomOverrideSensorInfo::activeArray));

template <>
inline constexpr auto kOf<ZoomOverrideSensorInfoConfig> = describe<ZoomOverrideSensorInfoConfig>(
    optional("sensorIds", &ZoomOverrideSensorInfoConfig::sensorIds),
    optional("sensorInfos", &ZoomOverrideSensorInfoConfig::sensorInfos));

template <>
inline constexpr auto kOf<ZoomOverrideSensorBehaviorInfoConfig> =
    describe<ZoomOverrideSensorBehaviorInfoConfig>(
        optional("portSizes", &ZoomOverrideSensorBehaviorInfoConfig::portSizes));

template <>
inline constexpr auto kOf<SensorCropMapperConfig> =
    describe<SensorCropMapperConfig>(optional("sensorIds", &SensorCropMapperConfig::sensorIds),
                                     optional("sensorInfos", &SensorCropMapperConfig::sensorInfos));

template <>
inline constexpr auto kOf<SensorCropInput> =
    describe<SensorCropInput>(optional("enable", &SensorCropInput::enable),
                              required("zoomRatio", &SensorCropInput::zoomRatio));

template <>
inline constexpr auto kOf<SensorCropOutput> =
    describe<SensorCropOutput>(optional("isValid", &SensorCropOutput::isValid),
                               optional("zoomRatio", &SensorCropOutput::zoomRatio),
                               optional("sensorCrops", &SensorCropOutput::sensorCrops));

template <>
inline constexpr auto kOf<NSCam::v3::CustomZoomRatioOverride> =
    describe<NSCam::v3::CustomZoomRatioOverride>(
        optional("zoomRatio", &NSCam::v3::CustomZoomRatioOverride::zoomRatio),
        optional("enable", &NSCam::v3::CustomZoomRatioOverride::enable));

template <typename Record, typename Item, typename Visit>
constexpr void visitCarried(Field<Record, Item> const& field, Visit& visit) {
    visit(field);
}
template <typename Record, typename Item, typename Visit>
constexpr void visitCarried(HiddenField<Record, Item> const& /*field*/, Visit& /*visit*/) {}

}  // namespace fields

template <typename T>
inline constexpr bool kIsRecord =
    !std::is_null_pointer_v<std::remove_const_t<decltype(fields::kOf<T>)>>;

/// Calls visit(Field) for each field of a record that scenarios carry.
template <typename Record, typename Visit>
constexpr void visitFields(Visit visit) {
    static_assert(kIsRecord<Record>, "the record has no description");
    std::apply([&visit](auto const&... field) { (fields::visitCarried(field, visit), ...); },
               fields::kOf<Record>);
}

/// Whether all fields are equal, hidden ones too. A NaN equals nothing.
template <typename Record>
bool areSame(Record const& a, Record const& b) {
    return std::apply(
        [&](auto const&... field) { return (... && (a.*field.member == b.*field.member)); },
        fields::kOf<Record>);
}

/// Whether a record holds what it holds when it is made.
template <typename Record>
bool isFresh(Record const& record) {
    return areSame(record, Record{});
}

}  // namespace scenario
