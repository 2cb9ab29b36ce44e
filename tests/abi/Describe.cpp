// Prints what a pipeline's compiled code relies on: the slots of the virtual operations, the sizes
// of the records and where their fields lie. One fact a line, so that a difference reads as a
// sentence.
#include <cstddef>
#include <cstring>
#include <iostream>
#include <utility>

#include "CustomSensorCropMapper.h"
#include "CustomZoomRatioOverride.h"
#include "ISensorCropMapperFactory.h"
#include "IZoomOverrideMgr.h"

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
void describeField(char const* record, char const* name, Field Record::*field) {
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

// Names must be spelt out once only.
#define SLOT(Class, operation) \
    std::cout << #Class "::" #operation " in slot " << slotOf(&Class::operation) << '\n'
#define SLOT_OF_FORM(Class, operation, form, ...)              \
    std::cout << #Class "::" #operation " (" form ") in slot " \
              << slotOf(static_cast<bool (Class::*)(__VA_ARGS__)>(&Class::operation)) << '\n'
#define RECORD(Record) describeRecord<Record>(#Record)
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
    RECORD(SensorCropMapperConfig);
    FIELD(SensorCropMapperConfig, sensorIds);
    FIELD(SensorCropMapperConfig, sensorInfos);
    RECORD(SensorCropInput);
    FIELD(SensorCropInput, enable);
    FIELD(SensorCropInput, zoomRatio);
    RECORD(SensorCropOutput);
    FIELD(SensorCropOutput, isValid);
    FIELD(SensorCropOutput, zoomRatio);
    FIELD(SensorCropOutput, sensorCrops);
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
    RECORD(ZoomOverrideRequest);
    FIELD(ZoomOverrideRequest, requestNo);
    FIELD(ZoomOverrideRequest, zoomRatio);
    FIELD(ZoomOverrideRequest, sensorId);
    RECORD(ZoomOverrideNeedHeader);
    FIELD(ZoomOverrideNeedHeader, overrideValid);
    FIELD(ZoomOverrideNeedHeader, requestNo);
    FIELD(ZoomOverrideNeedHeader, zoomRatio);
    FIELD(ZoomOverrideNeedHeader, mode);
    RECORD(ZoomOverrideP1Need);
    FIELD(ZoomOverrideP1Need, tgCrops);
    RECORD(ZoomOverrideP2Need);
    FIELD(ZoomOverrideP2Need, overrideRect);
    FIELD(ZoomOverrideP2Need, streamCrops);
    FIELD(ZoomOverrideP2Need, extraTgCrops);
    FIELD(ZoomOverrideP2Need, previewAaCrops);
    FIELD(ZoomOverrideP2Need, extraAaCrops);
    FIELD(ZoomOverrideP2Need, trailingInfo);
    RECORD(ZoomOverride3ANeed);
}

void describeDeposits() {
    RECORD(RunTimeCropNeedData);
    FIELD(RunTimeCropNeedData, sensorModes);
    FIELD(RunTimeCropNeedData, streamSizes);
    FIELD(RunTimeCropNeedData, constraintStreams);
    FIELD(RunTimeCropNeedData, extraTable);
    RECORD(ZoomOverrideSetting);
    FIELD(ZoomOverrideSetting, overrideValid);
    FIELD(ZoomOverrideSetting, requestNo);
    FIELD(ZoomOverrideSetting, zoomRatio);
    FIELD(ZoomOverrideSetting, overrideRect);
    FIELD(ZoomOverrideSetting, previewAaCrops);
    FIELD(ZoomOverrideSetting, extraAaCrops);
    FIELD(ZoomOverrideSetting, trailingInfo);
}

void describeConfigurations() {
    RECORD(ZoomOverrideFspInfoConfig);
    FIELD(ZoomOverrideFspInfoConfig, fspPorts);
    RECORD(ZoomOverrideSensorInfo);
    FIELD(ZoomOverrideSensorInfo, degreeH);
    FIELD(ZoomOverrideSensorInfo, degreeV);
    FIELD(ZoomOverrideSensorInfo, activeArray);
    RECORD(ZoomOverrideSensorInfoConfig);
    FIELD(ZoomOverrideSensorInfoConfig, sensorIds);
    FIELD(ZoomOverrideSensorInfoConfig, sensorInfos);
    RECORD(ZoomOverrideSensorBehaviorInfoConfig);
    FIELD(ZoomOverrideSensorBehaviorInfoConfig, portSizes);
    RECORD(v3::CustomZoomRatioOverride);
    FIELD(v3::CustomZoomRatioOverride, zoomRatio);
    FIELD(v3::CustomZoomRatioOverride, enable);
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
