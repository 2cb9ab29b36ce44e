// Instant-request mode: metadata intake and the P1 crops that follow from it.
#include "ZoomOverrideInstantRequest.h"

#include <locale>
#include <sstream>

#include "CheckedLookup.h"
#include "HwTransHelper.h"
#include "IMetadata.h"
#include "LogLines.h"
#include "ZoomOverrideContract.h"
#include "geometry/DomainTransform.h"

namespace NSCam::Feature {

namespace {

// The helpers of the P1 query log in its name.
constexpr char kGetP1CropSetting[] = "getP1CropSetting";

unsigned long printableId(int64_t streamId) {
    return static_cast<unsigned long>(streamId);
}

/// The stream whose P1 crop a stream must follow: itself, unless the pipeline says otherwise.
int64_t constraintOf(RunTimeCropNeedData const& history, int64_t streamId) {
    auto const constraint = history.constraintStreams.find(streamId);
    return constraint == history.constraintStreams.end() ? streamId : constraint->second;
}

std::string toText(std::unordered_map<uint32_t, PortCrops> const& tgCrops) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    for (auto const& [sensorId, ports] : tgCrops) {
        text << '[' << std::dec << sensorId << ']';
        for (auto const& [port, crop] : ports) {
            text << "[0x" << std::hex << port << ']' << std::dec << '{' << crop.x << ' ' << crop.y
                 << ' ' << crop.w << ' ' << crop.h << '}';
        }
    }
    return text.str();
}

}  // namespace

ZoomOverrideInstantRequest::ZoomOverrideInstantRequest(std::shared_ptr<IZoomOverrideMgr> const& mgr,
                                                       int32_t logLevel)
    : mMgr(mgr), mLogLevel(logLevel) {
    ZLOG_DEBUG("[Zoom Override] InstantRequest");
}

bool ZoomOverrideInstantRequest::storeOverrideSetting(
    IMetadata const* metadata, std::unordered_map<uint32_t, uint64_t> const& streamIdMap) {
    // The ratio counts whatever becomes of the crops.
    if (!IMetadata::getEntry(metadata, kZoomRatioTag, mLatestZoomRatio, 0)) {
        ZLOG_FATAL("[Zoom Override] QVX_CONTROL_ZOOM_RATIO not found!");
    }
    ZLOG_DEBUG("LatestZoomRatio: %f", mLatestZoomRatio);

    auto const crops = metadata->entryFor(kCustomStreamCropTag, 0);
    if (crops.count() < kItemsPerCustomCrop || crops.itemAt<int32_t>(0) < 0) {
        mCustomCropValid = false;
        return false;
    }

    mCustomCrops.clear();
    mCustomCropValid = true;
    // A last group that lacks items is still taken: producers send whole groups.
    for (uint32_t i = 0; i < crops.count(); i += kItemsPerCustomCrop) {
        auto const cusStreamId = crops.itemAt<int32_t>(i);
        auto const stream = streamIdMap.find(static_cast<uint32_t>(cusStreamId));
        if (stream == streamIdMap.end()) {
            continue;
        }
        auto const streamId = static_cast<int64_t>(stream->second);
        MRect const rect{crops.itemAt<int32_t>(i + 1), crops.itemAt<int32_t>(i + 2),
                         crops.itemAt<int32_t>(i + 3), crops.itemAt<int32_t>(i + 4)};
        mCustomCrops.insert_or_assign(streamId, rect);
        ZLOG_DEBUG("cusStreamId: %d  streamId: 0x%lx rect(%d, %d, %d, %d)", cusStreamId,
                   printableId(streamId), rect.x, rect.y, rect.w, rect.h);
    }
    return true;
}

bool ZoomOverrideInstantRequest::getP1CropSetting(ZoomOverrideRequest const& request,
                                                  ZoomOverrideP1Need& need) {
    need.overrideValid = mCustomCropValid;
    need.requestNo = -1;
    need.zoomRatio = mLatestZoomRatio;
    need.mode = ZoomOverrideMode::InstantRequest;

    // P1 must not crop more tightly than any stream needs, so it follows only to a wider view.
    bool const canOverrideP1 = mLatestZoomRatio < request.zoomRatio && mCustomCropValid;
    ZLOG_DEBUG("canOverrideP1 %d!", canOverrideP1);
    if (!canOverrideP1) {
        return false;
    }

    if (mMgr.expired()) {
        ZLOG_FATAL("ZoomOverride Tools nullptr");
    }
    QueryContext const context(mMgr, static_cast<int32_t>(request.requestNo), mName, __func__);
    for (auto const& [streamId, activeCrop] : mCustomCrops) {
        cropStream(context, streamId, activeCrop, need);
    }
    cropInternalStreams(context.history(), need);
    ZLOG_TRACE("overrideInfo: %s", toText(need.tgCrops).c_str());
    return true;
}

void ZoomOverrideInstantRequest::cropStream(QueryContext const& context, int64_t streamId,
                                            MRect const& activeCrop,
                                            ZoomOverrideP1Need& need) const {
    auto const sensorId = sensorIdOfStream(streamId);
    auto const sensorMode = context.streamingMode(sensorId);
    if (!sensorMode) {
        return;
    }

    auto matrix = kIdentityMatrix;
    NSCamHW::HwTransHelper transform(static_cast<int32_t>(sensorId));
    if (!transform.getMatrixFromActive(*sensorMode, matrix)) {
        ZLOG_FATAL_FOR(kGetP1CropSetting, "getMatrixFromActive fail");
    }
    if (mLogLevel >= 2) {
        ZLOG_DEBUG_FOR(kGetP1CropSetting, "activecrop :%d,%d,%d,%d", activeCrop.x, activeCrop.y,
                       activeCrop.w, activeCrop.h);
    }
    MRect tgCrop = toTgDomain(matrix, activeCrop);
    if (mLogLevel >= 2) {
        ZLOG_DEBUG_FOR(kGetP1CropSetting, "before refine:%d,%d,%d,%d", tgCrop.x, tgCrop.y, tgCrop.w,
                       tgCrop.h);
    }

    auto const constraintId = constraintOf(context.history(), streamId);
    ZLOG_TRACE_FOR(kGetP1CropSetting, "streamId{0x%lx}<->constraintStreamId{0x%lx}",
                   printableId(streamId), printableId(constraintId));
    context.mgr().correctTgCropRegion(static_cast<int32_t>(sensorId),
                                      static_cast<int32_t>(*sensorMode), true,
                                      lookUp(context.history().streamSizes, constraintId), tgCrop);
    need.tgCrops[sensorId][portKeyOfStream(streamId)] = tgCrop;
    ZLOG_TRACE_FOR(kGetP1CropSetting,
                   "custom crop(activeDomain): streamId(0x%lx) {[%d,%d,(%d,%d)]}",
                   printableId(streamId), activeCrop.x, activeCrop.y, activeCrop.w, activeCrop.h);
    ZLOG_TRACE_FOR(kGetP1CropSetting, "custom crop(tgResult): streamId(0x%lx) {[%d,%d,(%d,%d)]}",
                   printableId(streamId), tgCrop.x, tgCrop.y, tgCrop.w, tgCrop.h);
}

void ZoomOverrideInstantRequest::cropInternalStreams(RunTimeCropNeedData const& history,
                                                     ZoomOverrideP1Need& need) const {
    for (auto const& stream : history.streamSizes) {
        auto const streamId = stream.first;
        ZLOG_TRACE_FOR(kGetP1CropSetting, "check streamId {0x%lx}", printableId(streamId));
        if (mCustomCrops.count(streamId) != 0) {
            continue;
        }
        auto const constraint = history.constraintStreams.find(streamId);
        if (constraint == history.constraintStreams.end() ||
            mCustomCrops.count(constraint->second) == 0) {
            continue;
        }

        // Both crops are those of the follower's sensor. A followed stream that got no crop there,
        // because it belongs to another sensor or its sensor does not stream, passes on an empty
        // one.
        auto const sensorId = sensorIdOfStream(streamId);
        auto& ports = need.tgCrops[sensorId];
        ports[portKeyOfStream(streamId)] = ports[portKeyOfStream(constraint->second)];
        ZLOG_TRACE_FOR(kGetP1CropSetting,
                       "internal stream must also override avoiding hit p1 limitation, "
                       "sensorId:%d,{0x%lx} <- {0x%lx}",
                       sensorId, printableId(streamId), printableId(constraint->second));
    }
}

bool ZoomOverrideInstantRequest::onRequestDone([[maybe_unused]] uint32_t requestNo) {
    ZLOG_TRACE("req %d request Done, but nothing need remove in this special module", requestNo);
    return true;
}

ZoomOverrideMode ZoomOverrideInstantRequest::getZoomOverrideMode() {
    return ZoomOverrideMode::InstantRequest;
}

}  // namespace NSCam::Feature
