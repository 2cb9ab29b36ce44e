// By-request mode: keeping the setting and the P1 and P2 answers that follow from it.
#include "ZoomOverrideByRequest.h"

#include <locale>
#include <sstream>

#include "LogLines.h"
#include "QueryContext.h"
#include "geometry/DomainTransform.h"

namespace NSCam::Feature {

using NSCamHW::HwTransHelper;
using NSCamHW::simplifiedMatrix;

namespace {

// The helpers of the P2 query log in its name.
constexpr char kGetP2CropSetting[] = "getP2CropSetting";

void fillHeader(ZoomOverrideSetting const& setting, ZoomOverrideNeedHeader& need) {
    need.overrideValid = setting.overrideValid;
    need.requestNo = static_cast<int32_t>(setting.requestNo);
    need.zoomRatio = setting.zoomRatio;
    need.mode = ZoomOverrideMode::ByRequest;
}

MRect correctedTgCrop(IZoomOverrideMgr& mgr, uint32_t sensorId, uint32_t sensorMode,
                      simplifiedMatrix const& matrix, MRectF const& activeCrop) {
    MRect tgCrop = toTgDomain(matrix, activeCrop);
    mgr.correctTgCropRegion(static_cast<int32_t>(sensorId), static_cast<int32_t>(sensorMode), false,
                            {}, tgCrop);
    return tgCrop;
}

template <typename Crops>
void appendCrops(std::ostream& text, Crops const& crops) {
    for (auto const& [sensorId, crop] : crops) {
        text << '[' << sensorId << "]{" << crop.x << ' ' << crop.y << ' ' << crop.w << ' ' << crop.h
             << '}';
    }
}

std::string toText(ZoomOverrideRequest const& request, ZoomOverrideP2Need const& need) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << "[OverrideAA]" << request.requestNo << "<-" << need.requestNo << "PreviewAA:";
    appendCrops(text, need.previewAaCrops);
    text << "PreviewTg:";
    appendCrops(text, need.streamCrops);
    return text.str();
}

}  // namespace

ZoomOverrideByRequest::ZoomOverrideByRequest(std::shared_ptr<IZoomOverrideMgr> const& mgr,
                                             int32_t logLevel)
    : mMgr(mgr), mLogLevel(logLevel) {
    ZLOG_DEBUG("[Zoom Override] ByRequest");
}

bool ZoomOverrideByRequest::storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                                                 std::shared_ptr<ZoomOverrideSetting> setting) {
    if (notice == OverrideNotice::Repeating) {
        if (!mOverrideSetting) {
            ZLOG_ABORT("Repeating hint but theoverrideSetting are not store any data");
        }
        mOverrideSetting->requestNo = requestNo;
        ZLOG_TRACE("[Repeating]only update setting request no(%d)", requestNo);
        return true;
    }
    mOverrideSetting = std::move(setting);
    ZLOG_TRACE("[Repeating] update override setting no(%d)", requestNo);
    return true;
}

bool ZoomOverrideByRequest::getP1CropSetting(ZoomOverrideRequest const&, ZoomOverrideP1Need& need) {
    auto const& setting = keptSetting(__func__);
    ZLOG_DEBUG("latest req %d, ratio %.2f!!", setting.requestNo, setting.zoomRatio);
    fillHeader(setting, need);
    bool const canOverrideP1 = false;
    ZLOG_DEBUG("canOverrideP1 %d!", canOverrideP1);
    return canOverrideP1;
}

bool ZoomOverrideByRequest::getP2CropSetting(ZoomOverrideRequest const& request,
                                             ZoomOverrideP2Need& need, bool manual) {
    auto const& setting = keptSetting(__func__);
    fillHeader(setting, need);
    if (!canOverrideP2(setting, request, manual)) {
        return takeCachedP2(request.requestNo, need);
    }
    overrideP2(setting, request, need);
    ZLOG_TRACE("overrideInfo: %s", toText(request, need).c_str());
    return true;
}

bool ZoomOverrideByRequest::canOverrideP2(ZoomOverrideSetting const& setting,
                                          ZoomOverrideRequest const& request, bool manual) const {
    bool const fresh = setting.requestNo > request.requestNo;
    bool const usable = setting.overrideValid && fresh;
    if (manual && !usable) {
        ZLOG_DEBUG_FOR(kGetP2CropSetting, "manual mode but the override function off");
    }
    bool const canP2Override = usable && (manual || setting.zoomRatio >= request.zoomRatio);
    ZLOG_DEBUG_FOR(kGetP2CropSetting, "canP2Override %d! manual:%d", canP2Override, manual);
    return canP2Override;
}

bool ZoomOverrideByRequest::takeCachedP2(uint32_t requestNo, ZoomOverrideP2Need& need) {
    auto const cached = mP2Cache.find(requestNo);
    if (cached == mP2Cache.end()) {
        return false;
    }
    need = std::move(cached->second);
    mP2Cache.erase(cached);
    return true;
}

void ZoomOverrideByRequest::overrideP2(ZoomOverrideSetting const& setting,
                                       ZoomOverrideRequest const& request,
                                       ZoomOverrideP2Need& need) const {
    need.previewAaCrops = setting.previewAaCrops;
    need.extraAaCrops = setting.extraAaCrops;
    need.overrideRect = setting.overrideRect;

    QueryContext const context(mMgr, static_cast<int32_t>(request.requestNo), mName,
                               kGetP2CropSetting);
    for (auto const& [sensorId, previewCrop] : need.previewAaCrops) {
        auto const mode = context.streamingMode(sensorId);
        if (!mode) {
            continue;
        }
        ZLOG_TRACE_FOR(kGetP2CropSetting, "inputRequest:%d outputRequest:%d", request.requestNo,
                       need.requestNo);
        auto matrix = kIdentityMatrix;
        if (!HwTransHelper(static_cast<int32_t>(sensorId)).getMatrixFromActive(*mode, matrix)) {
            ZLOG_ABORT_FOR(kGetP2CropSetting, "get Matrix error");
        }
        need.streamCrops[sensorId] =
            correctedTgCrop(context.mgr(), sensorId, *mode, matrix, previewCrop);
        // A sensor without a second crop gets an empty one, in both domains.
        need.extraTgCrops[sensorId] =
            correctedTgCrop(context.mgr(), sensorId, *mode, matrix, need.extraAaCrops[sensorId]);
    }
    need.trailingInfo = setting.trailingInfo;
}

bool ZoomOverrideByRequest::get3ACropSetting(ZoomOverrideRequest const&, ZoomOverride3ANeed&) {
    ZLOG_ABORT("[Zoom Override] By Request still not support 3A override");
}

bool ZoomOverrideByRequest::onRequestDone(uint32_t requestNo) {
    ZLOG_TRACE("req %d request Done, remove p2 cached", requestNo);
    mP2Cache.erase(requestNo);
    return true;
}

ZoomOverrideMode ZoomOverrideByRequest::getZoomOverrideMode() {
    return ZoomOverrideMode::ByRequest;
}

bool ZoomOverrideByRequest::getTransformMatrix(int32_t sensorId, int32_t targetMode,
                                               int32_t sourceMode, simplifiedMatrix& matrix) const {
    HwTransHelper transform(sensorId);
    auto fromActive = kIdentityMatrix;
    auto toActive = kIdentityMatrix;
    ZLOG_DEBUG("[Zoom Override] sensor mode not match, prepare recalculating");
    bool const ok = transform.getMatrixFromActive(static_cast<uint32_t>(targetMode), fromActive) &&
                    transform.getMatrixToActive(static_cast<uint32_t>(sourceMode), toActive);
    matrix.xScale = fromActive.xScale * toActive.xScale;
    matrix.xOffset = fromActive.xScale * toActive.xOffset + fromActive.xOffset;
    matrix.yScale = fromActive.yScale * toActive.yScale;
    matrix.yOffset = fromActive.yScale * toActive.yOffset + fromActive.yOffset;
    return ok;
}

ZoomOverrideSetting const& ZoomOverrideByRequest::keptSetting(char const* operation) const {
    if (!mOverrideSetting) {
        ZLOG_ABORT_FOR(operation, "[Zoom Override] no override setting is kept");
    }
    return *mOverrideSetting;
}

}  // namespace NSCam::Feature
