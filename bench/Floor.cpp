// The floors.
#include "Floor.h"

#include <cmath>
#include <numbers>

#include "ZoomOverrideContract.h"

namespace Bench::Floor {

using namespace NSCam::Feature;
using NSCamHW::HwTransHelper;
using NSCamHW::simplifiedMatrix;

namespace {

simplifiedMatrix matrixOf(uint32_t sensorId, uint32_t mode) {
    simplifiedMatrix matrix;
    HwTransHelper(static_cast<int32_t>(sensorId)).getMatrixFromActive(mode, matrix);
    return matrix;
}

template <typename Rect>
MRect toTg(simplifiedMatrix const& matrix, Rect const& crop) {
    return {static_cast<int32_t>(matrix.xScale * static_cast<float>(crop.x) + matrix.xOffset),
            static_cast<int32_t>(matrix.yScale * static_cast<float>(crop.y) + matrix.yOffset),
            static_cast<int32_t>(matrix.xScale * static_cast<float>(crop.w)),
            static_cast<int32_t>(matrix.yScale * static_cast<float>(crop.h))};
}

void centre(MSize output, MRect& crop) {
    crop.x = (output.w - crop.w) / 2;
    crop.y = (output.h - crop.h) / 2;
}

void scaleSides(MSize limit, bool width, float ratio, MRect& crop) {
    if (width) {
        crop.w = limit.w;
        crop.h = static_cast<int32_t>(std::round(static_cast<float>(limit.w) / ratio));
    } else {
        crop.h = limit.h;
        crop.w = static_cast<int32_t>(std::round(ratio * static_cast<float>(limit.h)));
    }
}

float tangentOfHalf(float degree) {
    float turn = std::fmod(degree * 0.5F, 360.0F);
    if (turn < 0.0F) {
        turn += 360.0F;
    }
    auto const radians = static_cast<float>(static_cast<double>(turn) * std::numbers::pi / 180.0);
    return static_cast<float>(std::tan(static_cast<double>(radians)));
}

MRect centredIn(MRect const& array, int32_t w, int32_t h) {
    MRect const crop{array.x + (array.w - w) / 2, array.y + (array.h - h) / 2, w, h};
    return crop.x < 0 || crop.y < 0 ? array : crop;
}

void fillHeader(int32_t requestNo, float zoomRatio, ZoomOverrideMode mode,
                ZoomOverrideNeedHeader& need) {
    need.overrideValid = true;
    need.requestNo = requestNo;
    need.zoomRatio = zoomRatio;
    need.mode = mode;
}

}  // namespace

void fitTgCrop(MSize output, bool checkMinSize, MSize minSize, MRect& crop) {
    if (crop.w > output.w || crop.h > output.h) {
        auto const ratio = static_cast<float>(crop.w) / static_cast<float>(crop.h);
        if (crop.w > output.w) {
            scaleSides(output, true, ratio, crop);
        }
        if (crop.h > output.h) {
            scaleSides(output, false, ratio, crop);
        }
        centre(output, crop);
    }
    if (checkMinSize && (crop.w < minSize.w || crop.h < minSize.h)) {
        auto const ratio = static_cast<float>(crop.w) / static_cast<float>(crop.h);
        if (crop.w < minSize.w) {
            scaleSides(minSize, true, ratio, crop);
        }
        if (crop.h < minSize.h) {
            scaleSides(minSize, false, ratio, crop);
        }
        centre(output, crop);
    }
    crop.x = std::max(crop.x, 0);
    crop.y = std::max(crop.y, 0);
    crop.x = std::min(crop.x, output.w - crop.w);
    crop.y = std::min(crop.y, output.h - crop.h);
}

void readMetadata(NSCam::IMetadata const& metadata,
                  std::unordered_map<uint32_t, uint64_t> const& streamIds, InstantOverride& kept) {
    NSCam::IMetadata::getEntry(&metadata, kZoomRatioTag, kept.zoomRatio, 0);
    auto const items = metadata.entryFor(kCustomStreamCropTag, 0);
    kept.crops.clear();
    auto const count = static_cast<uint32_t>(items.count());
    for (uint32_t i = 0; i < count; i += 5) {
        auto const stream = streamIds.find(static_cast<uint32_t>(items.itemAt<int32_t>(i)));
        kept.crops.insert_or_assign(
            static_cast<int64_t>(stream->second),
            MRect{items.itemAt<int32_t>(i + 1), items.itemAt<int32_t>(i + 2),
                  items.itemAt<int32_t>(i + 3), items.itemAt<int32_t>(i + 4)});
    }
}

bool instantP1(InstantOverride const& kept, RunTimeCropNeedData const& data,
               std::vector<MSize> const& outputs, ZoomOverrideRequest const& request,
               ZoomOverrideP1Need& need) {
    fillHeader(-1, kept.zoomRatio, ZoomOverrideMode::InstantRequest, need);
    if (kept.zoomRatio >= request.zoomRatio) {
        return false;
    }
    for (auto const& [streamId, active] : kept.crops) {
        auto const sensorId = sensorIdOfStream(streamId);
        auto const mode = data.sensorModes.find(sensorId)->second;
        if (mode == kSensorNotStreaming) {
            continue;
        }
        auto crop = toTg(matrixOf(sensorId, mode), active);
        auto const followed = data.constraintStreams.find(streamId);
        auto const sizeOf = followed == data.constraintStreams.end() ? streamId : followed->second;
        fitTgCrop(outputs[sensorId], true, data.streamSizes.find(sizeOf)->second, crop);
        need.tgCrops[sensorId][portKeyOfStream(streamId)] = crop;
    }
    for (auto const& [streamId, size] : data.streamSizes) {
        if (kept.crops.contains(streamId)) {
            continue;
        }
        auto const followed = data.constraintStreams.find(streamId);
        if (followed != data.constraintStreams.end() && kept.crops.contains(followed->second)) {
            auto& ports = need.tgCrops[sensorIdOfStream(streamId)];
            ports[portKeyOfStream(streamId)] = ports[portKeyOfStream(followed->second)];
        }
    }
    return true;
}

bool byRequestP1(ZoomOverrideSetting const& setting, ZoomOverrideP1Need& need) {
    fillHeader(static_cast<int32_t>(setting.requestNo), setting.zoomRatio,
               ZoomOverrideMode::ByRequest, need);
    return false;
}

bool byRequestP2(ZoomOverrideSetting const& setting, RunTimeCropNeedData const& data,
                 std::vector<MSize> const& outputs, ZoomOverrideRequest const& request,
                 ZoomOverrideP2Need& need) {
    fillHeader(static_cast<int32_t>(setting.requestNo), setting.zoomRatio,
               ZoomOverrideMode::ByRequest, need);
    if (setting.requestNo <= request.requestNo || setting.zoomRatio < request.zoomRatio) {
        return false;
    }
    need.previewAaCrops = setting.previewAaCrops;
    need.extraAaCrops = setting.extraAaCrops;
    need.overrideRect = setting.overrideRect;
    for (auto const& [sensorId, preview] : need.previewAaCrops) {
        auto const mode = data.sensorModes.find(sensorId)->second;
        if (mode == kSensorNotStreaming) {
            continue;
        }
        auto const matrix = matrixOf(sensorId, mode);
        auto crop = toTg(matrix, preview);
        fitTgCrop(outputs[sensorId], false, {}, crop);
        need.streamCrops[sensorId] = crop;
        auto extra = toTg(matrix, need.extraAaCrops[sensorId]);
        fitTgCrop(outputs[sensorId], false, {}, extra);
        need.extraTgCrops[sensorId] = extra;
    }
    need.trailingInfo = setting.trailingInfo;
    return true;
}

void mapCrops(SensorCropMapperConfig const& config, SensorCropInput const& in,
              SensorCropOutput& out) {
    auto const masterId = static_cast<uint32_t>(config.sensorIds.front());
    auto const& master = *config.sensorInfos.find(masterId)->second;
    auto const& masterArray = master.activeArray;
    auto const masterW = static_cast<int32_t>(static_cast<float>(masterArray.w) / in.zoomRatio);
    auto const masterH = static_cast<int32_t>(static_cast<float>(masterArray.h) / in.zoomRatio);
    out.isValid = in.enable;
    out.zoomRatio = static_cast<float>(masterArray.w - masterArray.x) / static_cast<float>(masterW);

    auto const masterTangentH = tangentOfHalf(master.degreeH);
    auto const masterTangentV = tangentOfHalf(master.degreeV);
    for (auto const& [sensorId, info] : config.sensorInfos) {
        auto const& array = info->activeArray;
        if (info->degreeH == master.degreeH) {
            out.sensorCrops.try_emplace(sensorId, centredIn(array, masterW, masterH));
            continue;
        }
        auto const ratioH = tangentOfHalf(info->degreeH) / masterTangentH;
        auto const ratioV = tangentOfHalf(info->degreeV) / masterTangentV;
        auto const w = static_cast<int32_t>(static_cast<float>(array.w) / (ratioH * out.zoomRatio));
        auto const h = static_cast<int32_t>(static_cast<float>(array.h) / (ratioV * out.zoomRatio));
        out.sensorCrops.try_emplace(sensorId, centredIn(array, w, h));
    }
}

bool externalP1(CustomRatio::Reader const& reader, Rig const& rig,
                SensorCropMapperConfig const& config, RunTimeCropNeedData const& data,
                ZoomOverrideRequest const& request, ZoomOverrideP1Need& need) {
    auto const entry = *reader.readNewest();
    fillHeader(-1, entry->zoomRatio, ZoomOverrideMode::ExternalAPI, need);
    if (entry->zoomRatio >= request.zoomRatio) {
        return false;
    }
    SensorCropOutput crops;
    mapCrops(config, {entry->enable, entry->zoomRatio}, crops);
    fillHeader(static_cast<int32_t>(request.requestNo), crops.zoomRatio,
               ZoomOverrideMode::ExternalAPI, need);
    for (auto const& [sensorId, active] : crops.sensorCrops) {
        auto const mode = data.sensorModes.find(sensorId)->second;
        if (mode == kSensorNotStreaming) {
            continue;
        }
        auto crop = toTg(matrixOf(sensorId, mode), active);
        fitTgCrop(rig.outputSizes[sensorId], false, {}, crop);
        auto const& sizes = rig.ports.portSizes.find(sensorId)->second;
        auto& ports = need.tgCrops[sensorId];
        bool const hasR1 = sizes.contains(P1Port::P1_PORT_R1 & 0xFFU);
        bool const hasR3 = sizes.contains(P1Port::P1_PORT_R3 & 0xFFU);
        if (hasR1) {
            ports[P1Port::P1_PORT_R1] = crop;
        }
        if (hasR1 || hasR3) {
            ports[P1Port::P1_PORT_R2] = crop;
        }
        if (hasR3) {
            ports[P1Port::P1_PORT_R3] = crop;
        }
    }
    return true;
}

bool externalP2(CustomRatio::Reader const& reader, Rig const& rig,
                SensorCropMapperConfig const& config, RunTimeCropNeedData const& data,
                ZoomOverrideRequest const& request, ZoomOverrideP2Need& need) {
    auto const entry = *reader.readNewest();
    fillHeader(-1, entry->zoomRatio, ZoomOverrideMode::ExternalAPI, need);
    if (entry->zoomRatio < request.zoomRatio) {
        return false;
    }
    SensorCropOutput crops;
    mapCrops(config, {entry->enable, entry->zoomRatio}, crops);
    fillHeader(static_cast<int32_t>(request.requestNo), crops.zoomRatio,
               ZoomOverrideMode::ExternalAPI, need);
    for (auto const& [sensorId, active] : crops.sensorCrops) {
        if (data.sensorModes.find(sensorId)->second == kSensorNotStreaming) {
            continue;
        }
        auto crop = active;
        fitTgCrop(rig.outputSizes[sensorId], false, {}, crop);
        need.streamCrops.try_emplace(sensorId, crop);
    }
    return true;
}

}  // namespace Bench::Floor
