// A camera pipeline on a workstation: the calls of InstantRequest and of ByRequest mode in their
// order, one sensor with one stream. PublishZoom.cpp beside it has those of ExternalAPI mode.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include "IMetadata.h"
#include "IZoomOverrideMgr.h"
#include "ZoomOverrideContract.h"
#include "host/SensorTable.h"

namespace {

using namespace NSCam;
using namespace NSCam::Feature;
using P1Port::P1_PORT_R1;

// ---- The camera: an IMX708, which in mode 1 runs binned two by two ----

constexpr int32_t kSensor = 0;
constexpr uint32_t kBinned = 1;
constexpr MSize kBinnedSize{2304, 1296};
constexpr MRect kActiveArray{0, 0, 4608, 2592};
constexpr MRect kCentreHalf{1152, 648, 2304, 1296};  // active array: what 2x shows

// A stream id tells where the stream comes from: here sensor 0, port R1.
constexpr int64_t kPreview = streamIdOf(kSensor, P1_PORT_R1);

/// A device knows its sensors; the host platform is told.
void describeSensor() {
    Host::setSensor(kSensor,
                    {{kBinned, {kBinnedSize, Host::matrixOfWindow(kBinnedSize, kActiveArray)}}});
}

RunTimeCropNeedData runTimeData() {
    RunTimeCropNeedData data;
    data.sensorModes = {{kSensor, kBinned}};
    data.streamSizes = {{kPreview, {640, 360}}};
    return data;
}

/// The entry of a table, null where there is none: a sensor may have no crop.
template <typename Table>
typename Table::mapped_type const* find(Table const& table, typename Table::key_type key) {
    auto const entry = table.find(key);
    return entry == table.end() ? nullptr : &entry->second;
}

/// A pipeline would program the stage; without an override it applies the application's zoom.
void apply(char const* stage, ZoomOverrideRequest const& request, MRect const* crop) {
    if (crop == nullptr) {
        std::printf("request %u, %s: no override\n", request.requestNo, stage);
        return;
    }
    std::printf("request %u, %s: (%d, %d) %dx%d\n", request.requestNo, stage, crop->x, crop->y,
                crop->w, crop->h);
}

// ---- InstantRequest: the override is in the request's metadata ----

/// What the application's process sends: a ratio, and a crop for its stream number 7.
IMetadata metadataOf(float zoomRatio, MRect const& crop) {
    IMetadata metadata;
    metadata.update(kZoomRatioTag, IMetadata::IEntry(std::vector{zoomRatio}));
    metadata.update(kCustomStreamCropTag,
                    IMetadata::IEntry(std::vector{7, crop.x, crop.y, crop.w, crop.h}));
    return metadata;
}

void runInstantRequest(IZoomOverrideMgr& mgr, ZoomOverrideRequest const& request,
                       OverrideNotice notice, IMetadata const& metadata) {
    mgr.setRunTimeCropNeedData(request.requestNo, notice, runTimeData());
    mgr.storeOverrideSetting(&metadata, {{7, kPreview}});

    ZoomOverrideP1Need p1;
    bool const overridden = mgr.getP1CropSetting(request, p1);
    auto const* const ports = overridden ? find(p1.tgCrops, kSensor) : nullptr;
    apply("P1", request, ports != nullptr ? find(*ports, P1_PORT_R1) : nullptr);
    mgr.onRequestDone(request.requestNo);
}

// ---- ByRequest: the pipeline makes settings, each for a request to come ----

std::shared_ptr<ZoomOverrideSetting> settingFor(uint32_t requestNo) {
    auto setting = std::make_shared<ZoomOverrideSetting>();
    setting->overrideValid = true;
    setting->requestNo = requestNo;
    setting->zoomRatio = 2.0F;
    setting->previewAaCrops = {{kSensor, {1152.0F, 648.0F, 2304.0F, 1296.0F}}};
    return setting;
}

void runByRequest(IZoomOverrideMgr& mgr, ZoomOverrideRequest const& request) {
    mgr.setRunTimeCropNeedData(request.requestNo, OverrideNotice::Default, runTimeData());

    ZoomOverrideP2Need p2;
    bool const overridden = mgr.getP2CropSetting(request, p2, false);
    apply("P2", request, overridden ? find(p2.streamCrops, kSensor) : nullptr);
    mgr.onRequestDone(request.requestNo);
}

}  // namespace

int main() {
    describeSensor();
    auto const mgr = IZoomOverrideMgr::getInstance();

    std::puts("InstantRequest");
    mgr->initialize(ZoomOverrideMode::InstantRequest);
    auto const metadata = metadataOf(2.0F, kCentreHalf);
    runInstantRequest(*mgr, {.requestNo = 1, .zoomRatio = 3.0F}, OverrideNotice::Default, metadata);
    runInstantRequest(*mgr, {.requestNo = 2, .zoomRatio = 3.0F}, OverrideNotice::Repeating,
                      metadata);
    runInstantRequest(*mgr, {.requestNo = 3, .zoomRatio = 2.0F}, OverrideNotice::Default, metadata);

    std::puts("ByRequest");
    mgr->initialize(ZoomOverrideMode::ByRequest);
    mgr->storeOverrideSetting(2, OverrideNotice::Default, settingFor(2));
    runByRequest(*mgr, {.requestNo = 1, .zoomRatio = 1.5F});
    runByRequest(*mgr, {.requestNo = 2, .zoomRatio = 1.5F});
    mgr->storeOverrideSetting(4, OverrideNotice::Repeating, nullptr);
    runByRequest(*mgr, {.requestNo = 3, .zoomRatio = 1.5F});
}
