// Prints what a pipeline's compiled code relies on: the slots of the virtual operations, the sizes
// of the records and where their fields lie. One fact a line, so that a difference reads as a
// sentence.
#include <cstddef>
#include <cstring>
#include <iostream>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "CustomSensorCropMapper.h"
#include "CustomZoomRatioOverride.h"
#include "ISensorCropMapperFactory.h"
#include "IZoomOverrideMgr.h"
#include "scenario/text/RecordFields.h"

namespace {

using namespace NSCam;
using namespace NSCam::Feature;

/// The slot that a pointer to a virtual operation stands for, counted from the first operation.
/// Some CPUs mark such pointers in their lowest bit, which the division drops.
template <typename Operation>
size_t slotOf(Operation operation) {
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &operation, sizeof offset);
    return static_cast<size_t>(offset) / sizeof(void*);
}

template <typename Record, typename Field>
void describeField(char const* record, std::string_view name, Field Record::*field) {
    Record const instance{};
    auto const* const begin = reinterpret_cast<std::byte const*>(&instance);
    auto const* const place = reinterpret_cast<std::byte const*>(&(instance.*field));
    std::cout << record << "::" << name << " at " << place - begin << ", " << sizeof(Field)
              << " bytes\n";
}

template <typename Record>
void describeRecord(char const* record) {
    std::cout << record << ' ' << sizeof(Record) << " bytes, aligned to " << alignof(Record)
              << '\n';
}

template <typename Record, typename Field>
Record recordOf(Field Record::*field);
template <typename Member>
using RecordOf = decltype(recordOf(std::declval<Member>()));

/// A record whose fields the tools describe, without those of the record that it begins with.
template <typename Record>
void describeWhole(char const* record) {
    describeRecord<Record>(record);
    auto const describe = [record](auto const& field) {
        if constexpr (std::is_same_v<RecordOf<decltype(field.member)>, Record>) {
            describeField(record, field.name, field.member);
        }
    };
    std::apply([&](auto const&... field) { (describe(field), ...); },
               scenario::fields::kOf<Record>);
}

// Names must be spelt out once only.
#define SLOT(Class, operation) \
    std::cout << #Class "::" #operation " in slot " << slotOf(&Class::operation) << '\n'
#define SLOT_OF_FORM(Class, operation, form, ...)              \
    std::cout << #Class "::" #operation " (" form ") in slot " \
              << slotOf(static_cast<bool (Class::*)(__VA_ARGS__)>(&Class::operation)) << '\n'
#define RECORD(Record) describeRecord<Record>(#Record)
#define DESCRIBED_RECORD(Record) describeWhole<Record>(#Record)
#define FIELD(Record, field) describeField<Record>(#Record, #field, &Record::field)

void describeManager() {
    SLOT(IZoomOverrideMgr, configFspInfo);
    SLOT(IZoomOverrideMgr, configSensorInfo);
    SLOT(IZoomOverrideMgr, getP1CropSetting);
    SLOT(IZoomOverrideMgr, getP2CropSetting);
    SLOT(IZoomOverrideMgr, get3ACropSetting);
    SLOT_OF_FORM(IZoomOverrideMgr, storeOverrideSetting, "metadata", IMetadata const*,
                 std::unordered_map<uint32_t, uint64_t> const&);
    SLOT_OF_FORM(IZoomOverrideMgr, storeOverrideSetting, "setting", uint32_t, OverrideNotice,
                 std::shared_ptr<ZoomOverrideSetting>);
    SLOT(IZoomOverrideMgr, onRequestDone);
    SLOT(IZoomOverrideMgr, getZoomOverrideMode);
    SLOT(IZoomOverrideMgr, initialize);
    SLOT(IZoomOverrideMgr, configSensorBehaviorInfo);
    SLOT(IZoomOverrideMgr, setRunTimeCropNeedData);
    SLOT(IZoomOverrideMgr, getHistoryCropNeedData);
    SLOT(IZoomOverrideMgr, isPortExist);
    SLOT(IZoomOverrideMgr, correctTgCropRegion);
}

void describeMapper() {
    SLOT(ISensorCropMapper, initialize);
    SLOT(ISensorCropMapper, config);
    SLOT(ISensorCropMapper, getSensorCrop);
    RECORD(CustomSensorCropMapper);
    RECORD(ISensorCropMapperFactory::CreationParams);
    FIELD(ISensorCropMapperFactory::CreationParams, externalApi);
    RECORD(SensorCropMapperInit);
    FIELD(SensorCropMapperInit, initParam);
    DESCRIBED_RECORD(SensorCropMapperConfig);
    DESCRIBED_RECORD(SensorCropInput);
    DESCRIBED_RECORD(SensorCropOutput);
}

void describeGeometry() {
    RECORD(MSize);
    FIELD(MSize, w);
    FIELD(MSize, h);
    RECORD(MRect);
    FIELD(MRect, x);
    FIELD(MRect, y);
    FIELD(MRect, w);
    FIELD(MRect, h);
    RECORD(MRectF);
    FIELD(MRectF, x);
    FIELD(MRectF, y);
    FIELD(MRectF, w);
    FIELD(MRectF, h);
}

void describeQueries() {
    DESCRIBED_RECORD(ZoomOverrideRequest);
    DESCRIBED_RECORD(ZoomOverrideNeedHeader);
    DESCRIBED_RECORD(ZoomOverrideP1Need);
    DESCRIBED_RECORD(ZoomOverrideP2Need);
    DESCRIBED_RECORD(ZoomOverride3ANeed);
}

void describeDeposits() {
    DESCRIBED_RECORD(RunTimeCropNeedData);
    DESCRIBED_RECORD(ZoomOverrideSetting);
}

void describeConfigurations() {
    DESCRIBED_RECORD(ZoomOverrideFspInfoConfig);
    DESCRIBED_RECORD(ZoomOverrideSensorInfo);
    DESCRIBED_RECORD(ZoomOverrideSensorInfoConfig);
    DESCRIBED_RECORD(ZoomOverrideSensorBehaviorInfoConfig);
    DESCRIBED_RECORD(v3::CustomZoomRatioOverride);
}

}  // namespace

int main() {
    describeManager();
    describeMapper();
    describeGeometry();
    describeQueries();
    describeDeposits();
    describeConfigurations();
}
