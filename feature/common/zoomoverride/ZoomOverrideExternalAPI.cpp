// External-API mode: set-up, and the P1 and P2 crops that follow from the customer's newest entry.
#include "ZoomOverrideExternalAPI.h"

#include <optional>

#include "HwTransHelper.h"
#include "LogLines.h"
#include "QueryContext.h"
#include "ZoomOverrideContract.h"
#include "geometry/DomainTransform.h"

namespace NSCam::Feature {

namespace {

using P1Port::P1_PORT_R1;
using P1Port::P1_PORT_R2;
using P1Port::P1_PORT_R3;

// Helpers log in the name of the operation that they serve.
constexpr char kUpdateSensorP1Crop[] = "updateSensorP1Crop";

/// What need says as long as no crops were made.
void presetHeader(v3::CustomZoomRatioOverride const& entry, ZoomOverrideNeedHeader& need) {
    need.overrideValid = entry.enable;
    need.requestNo = -1;
    need.zoomRatio = entry.zoomRatio;
    need.mode = ZoomOverrideMode::ExternalAPI;
}

/// What changes once crops were made, which only an enabled entry brings about.
void fillHeader(SensorCropOutput const& crops, ZoomOverrideRequest const& request,
                ZoomOverrideNeedHeader& need) {
    need.requestNo = static_cast<int32_t>(request.requestNo);
    need.zoomRatio = crops.zoomRatio;
}

}  // namespace

ZoomOverrideExternalAPI::ZoomOverrideExternalAPI(std::shared_ptr<IZoomOverrideMgr> const& mgr,
                                                 int32_t logLevel)
    : mMgr(mgr), mLogLevel(logLevel) {
    mpSensorCropMapper =
        ISensorCropMapperFactory::createSensorCropMapperInstance({.externalApi = true});
    mpCustomZoomReader =
        Container::createReader(kCustomZoomContainer, kCustomZoomCapacity, kCustomZoomFlags);
    if (!mpCustomZoomReader) {
        ZLOG_WARNING("[Zoom Override]: mpCustomZoomReader is null!!");
    }
}

bool ZoomOverrideExternalAPI::configFspInfo(ZoomOverrideFspInfoConfig const& config) {
    mvFspInfo = config.fspPorts;
    return true;
}

bool ZoomOverrideExternalAPI::configSensorInfo(ZoomOverrideSensorInfoConfig const& config) {
    if (mpSensorCropMapper) {
        mpSensorCropMapper->config({config.sensorIds, config.sensorInfos});
    }
    return true;
}

bool ZoomOverrideExternalAPI::getP1CropSetting(ZoomOverrideRequest const& request,
                                               ZoomOverrideP1Need& need) {
    auto const entry = newestEntry(__func__);
    if (!entry) {
        ZLOG_WARNING("[Zoom Override] reader return no zoom override data!!");
        return false;
    }
    ZLOG_DEBUG("ratio %.2f!!", entry->zoomRatio);
    presetHeader(*entry, need);

    // P1 must not crop more tightly than the request needs, so it follows only to a wider view.
    if (!entry->enable || !(entry->zoomRatio < request.zoomRatio)) {
        return false;
    }
    auto const crops = mapCrops(*entry);
    if (!crops.isValid) {
        return false;
    }
    fillHeader(crops, request, need);
    return updateSensorP1Crop(0, 0, crops.sensorCrops, need);
}

bool ZoomOverrideExternalAPI::getP2CropSetting(ZoomOverrideRequest const& request,
                                               ZoomOverrideP2Need& need, bool manual) {
    auto const entry = newestEntry(__func__);
    if (!entry) {
        ZLOG_WARNING("[ZoomOverride] reader return no zoom override data!!");
        return false;
    }
    ZLOG_DEBUG("ratio %.2f!!", entry->zoomRatio);
    presetHeader(*entry, need);

    // The mirror of P1: what P1 does not widen, P2 narrows.
    bool const canP2Override = (entry->zoomRatio >= request.zoomRatio && entry->enable) || manual;
    if (manual && !entry->enable) {
        ZLOG_DEBUG("manual mode but the override function off");
        return false;
    }
    ZLOG_DEBUG("canP2Override %d! manual:%d", canP2Override, manual);
    if (!canP2Override) {
        return false;
    }
    auto const crops = mapCrops(*entry);
    if (!crops.isValid) {
        return false;
    }
    fillHeader(crops, request, need);
    return updateSensorP2Crop(0, 0, crops.sensorCrops, need);
}

bool ZoomOverrideExternalAPI::onRequestDone(uint32_t requestNo) {
    ZLOG_TRACE("req %d request Done, but nothing need remove in this special module", requestNo);
    return true;
}

ZoomOverrideMode ZoomOverrideExternalAPI::getZoomOverrideMode() {
    return ZoomOverrideMode::ExternalAPI;
}

ZoomOverrideExternalAPI::Entry ZoomOverrideExternalAPI::newestEntry(char const* operation) const {
    if (!mpCustomZoomReader) {
        ZLOG_FATAL_FOR(operation, "CustomZoomReader not found");
    }
    return mpCustomZoomReader->readNewest().value_or(nullptr);
}

SensorCropOutput ZoomOverrideExternalAPI::mapCrops(v3::CustomZoomRatioOverride const& entry) const {
    SensorCropOutput crops;
    if (mpSensorCropMapper) {
        mpSensorCropMapper->getSensorCrop({.enable = entry.enable, .zoomRatio = entry.zoomRatio},
                                          crops);
    }
    return crops;
}

bool ZoomOverrideExternalAPI::updateSensorP1Crop(int32_t, int32_t, SensorCrops const& crops,
                                                 ZoomOverrideP1Need& need) const {
    QueryContext const context(mMgr, need.requestNo, mName, __func__);
    for (auto const& [sensorId, crop] : crops) {
        if (auto const mode = context.streamingMode(sensorId)) {
            auto const sensor = static_cast<int32_t>(sensorId);
            auto const sensorMode = static_cast<int32_t>(*mode);
            MRect tgCrop;
            convertToTgDomain(sensor, sensorMode, crop, tgCrop);
            need.tgCrops[sensorId] = cropPorts(context.mgr(), sensor, sensorMode, tgCrop);
        }
    }
    return true;
}

bool ZoomOverrideExternalAPI::updateSensorP2Crop(int32_t, int32_t, SensorCrops const& crops,
                                                 ZoomOverrideP2Need& need) const {
    QueryContext const context(mMgr, need.requestNo, mName, __func__);
    for (auto const& [sensorId, crop] : crops) {
        if (auto const mode = context.streamingMode(sensorId)) {
            // P2 works in the active array: the crop is made to fit, but not converted.
            MRect fitting = crop;
            context.mgr().correctTgCropRegion(static_cast<int32_t>(sensorId),
                                              static_cast<int32_t>(*mode), false, {}, fitting);
            need.streamCrops.try_emplace(sensorId, fitting);
        }
    }
    return true;
}

PortCrops ZoomOverrideExternalAPI::cropPorts(IZoomOverrideMgr& mgr, int32_t sensorId,
                                             int32_t sensorMode, MRect const& tgCrop) const {
    auto const cropPort = [&](uint16_t port) -> std::optional<MRect> {
        if (!mgr.isPortExist(sensorId, port)) {
            return std::nullopt;
        }
        MRect fitting = tgCrop;
        mgr.correctTgCropRegion(sensorId, sensorMode, false, {}, fitting);
        return fitting;
    };
    auto const r1 = cropPort(P1_PORT_R1);
    auto const r3 = cropPort(P1_PORT_R3);
    if (!r1 && !r3) {
        ZLOG_ERROR_LOCATED_FOR(kUpdateSensorP1Crop,
                               "unknown bundle R1/R3 crop, skip multicam crop setting.");
        return {};
    }

    bool const bundleR3 = r3 && (!r1 || followsR3(sensorId));
    PortCrops ports{{P1_PORT_R2, bundleR3 ? *r3 : *r1}};
    if (r1) {
        ports.emplace(P1_PORT_R1, *r1);
    }
    if (r3) {
        ports.emplace(P1_PORT_R3, *r3);
    }
    return ports;
}

bool ZoomOverrideExternalAPI::followsR3(int32_t sensorId) const {
    auto const fsp = mvFspInfo.find(static_cast<uint32_t>(sensorId));
    return fsp != mvFspInfo.end() && fsp->second == P1_PORT_R3;
}

bool ZoomOverrideExternalAPI::convertToTgDomain(int32_t sensorId, int32_t sensorMode,
                                                MRect const& active, MRect& tg) const {
    auto matrix = kIdentityMatrix;
    NSCamHW::HwTransHelper transform(sensorId);
    if (transform.getMatrixFromActive(static_cast<uint32_t>(sensorMode), matrix)) {
        tg = toTgDomain(matrix, active);
        return true;
    }
    if (mLogLevel != 0) {
        ZLOG_WARNING("get matrix failed");
    }
    tg = active;
    return true;
}

}  // namespace NSCam::Feature
