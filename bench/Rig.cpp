// The cameras that the cases work on.
#include "Rig.h"

#include <array>
#include <limits>

#include "ULogger.h"
#include "ZoomOverrideContract.h"
#include "host/SensorTable.h"

namespace Bench {

using namespace NSCam::Feature;

namespace {

struct Sensor {
    float degreeH;
    float degreeV;
    MSize array;
    MSize output;
    MRect window;
};

// IMX708, IMX708 with a wide lens, IMX477, IMX219, and a telephoto camera of a phone.
constexpr std::array<Sensor, kSensorKinds> kSensors{{
    {66.0F, 41.0F, {4608, 2592}, {2304, 1296}, {0, 0, 4608, 2592}},
    {102.0F, 67.0F, {4608, 2592}, {1536, 864}, {768, 432, 3072, 1728}},
    {55.3F, 42.88F, {4056, 3040}, {2028, 1520}, {0, 0, 4056, 3040}},
    {62.2F, 48.8F, {3280, 2464}, {1640, 1232}, {0, 0, 3280, 2464}},
    {16.54F, 12.45F, {4000, 3000}, {2000, 1500}, {0, 0, 4000, 3000}},
}};

constexpr MSize kStreamSize{960, 540};
constexpr uint32_t kStreamsPerGroup = 4;

Sensor const& sensorOf(uint32_t sensorId) {
    return kSensors.at(sensorId % kSensorKinds);
}

/// The centred crop of a ratio, active array.
MRect centredCrop(Sensor const& sensor) {
    auto const w = static_cast<int32_t>(static_cast<float>(sensor.array.w) / kOverrideRatio);
    auto const h = static_cast<int32_t>(static_cast<float>(sensor.array.h) / kOverrideRatio);
    return {(sensor.array.w - w) / 2, (sensor.array.h - h) / 2, w, h};
}

NSCam::MRectF withFractions(MRect const& crop) {
    return {static_cast<float>(crop.x), static_cast<float>(crop.y), static_cast<float>(crop.w),
            static_cast<float>(crop.h)};
}

void addSensor(uint32_t sensorId, Rig& rig) {
    auto const& sensor = sensorOf(sensorId);
    auto const id = static_cast<int32_t>(sensorId);
    NSCam::Host::setSensor(
        id, {{kSensorMode,
              {.size = sensor.output,
               .fromActive = NSCam::Host::matrixOfWindow(sensor.output, sensor.window)}}});
    auto const info = std::make_shared<ZoomOverrideSensorInfo>();
    info->degreeH = sensor.degreeH;
    info->degreeV = sensor.degreeV;
    info->activeArray = {0, 0, sensor.array.w, sensor.array.h};
    rig.sensorInfo.sensorIds.push_back(id);
    rig.sensorInfo.sensorInfos.emplace(sensorId, info);
    rig.ports.portSizes[sensorId] = {{uint8_t{1}, sensor.output}, {uint8_t{3}, sensor.output}};
    rig.data.sensorModes.emplace(sensorId, kSensorMode);
    rig.data.extraTable.emplace(sensorId, id);
    rig.outputSizes.push_back(sensor.output);

    auto const crop = withFractions(centredCrop(sensor));
    rig.setting->previewAaCrops.emplace(sensorId, crop);
    rig.setting->extraAaCrops.emplace(sensorId, crop);
}

/// @param items receives the stream's custom crop, unless the stream is internal.
void addStream(uint32_t number, Rig& rig, std::vector<int32_t>& items) {
    auto const group = number / kStreamsPerGroup;
    auto const inGroup = number % kStreamsPerGroup;
    auto const sensorId = group % rig.sensors;
    auto const port = static_cast<uint16_t>(P1Port::P1_PORT_R1 + inGroup +
                                            kStreamsPerGroup * (group / rig.sensors));
    auto const streamId = streamIdOf(sensorId, port, number);
    rig.data.streamSizes.emplace(streamId, kStreamSize);
    if (inGroup == kStreamsPerGroup - 1) {
        rig.data.constraintStreams.emplace(
            streamId,
            streamIdOf(sensorId, static_cast<uint16_t>(port - inGroup), number - inGroup));
        return;
    }
    rig.streamIds.emplace(number, static_cast<uint64_t>(streamId));
    auto const crop = centredCrop(sensorOf(sensorId));
    items.insert(items.end(), {static_cast<int32_t>(number), crop.x, crop.y, crop.w, crop.h});
}

}  // namespace

Rig makeRig(uint32_t sensors, uint32_t streams) {
    NSCam::Utils::ULog::ULogger::sDetailsLevel = 0;
    NSCam::Host::clearSensors();
    Rig rig;
    rig.sensors = sensors;
    rig.setting = std::make_shared<ZoomOverrideSetting>();
    rig.setting->overrideValid = true;
    rig.setting->requestNo = std::numeric_limits<uint32_t>::max();
    rig.setting->zoomRatio = kOverrideRatio;
    for (uint32_t sensorId = 0; sensorId < sensors; ++sensorId) {
        addSensor(sensorId, rig);
    }
    std::vector<int32_t> items;
    for (uint32_t number = 0; number < streams; ++number) {
        addStream(number, rig, items);
    }
    rig.metadata.update(kZoomRatioTag, NSCam::IMetadata::IEntry(std::vector{kOverrideRatio}));
    rig.metadata.update(kCustomStreamCropTag, NSCam::IMetadata::IEntry(std::move(items)));
    return rig;
}

std::shared_ptr<IZoomOverrideMgr> startManager(ZoomOverrideMode mode, Rig const& rig) {
    auto mgr = IZoomOverrideMgr::getInstance();
    mgr->initialize(mode);
    mgr->configSensorInfo(rig.sensorInfo);
    mgr->configSensorBehaviorInfo(rig.ports);
    return mgr;
}

void depositRequests(IZoomOverrideMgr& mgr, Rig const& rig, int count) {
    mgr.setRunTimeCropNeedData(0, OverrideNotice::Default, RunTimeCropNeedData(rig.data));
    for (int number = 1; number < count; ++number) {
        mgr.setRunTimeCropNeedData(static_cast<uint32_t>(number), OverrideNotice::Repeating, {});
    }
}

}  // namespace Bench
