// Writes each call as the line of a scenario that makes it again.
#include "CallRecorder.h"

#include "BootClock.h"
#include "IMetadata.h"
#include "ZoomOverrideContract.h"
#include "scenario/text/Line.h"

namespace zoomrecorder {

using namespace NSCam;
using namespace NSCam::Feature;

using scenario::Line;
using scenario::Object;

namespace {

void addNotice(Line& line, OverrideNotice notice) {
    if (notice != OverrideNotice::Default) {
        line.field("notice", notice);
    }
}

// Only what the manager reads of it. A null pointer lacks all tags.
std::string textOf(IMetadata const* metadata) {
    std::string text;
    Object object(text);
    float zoomRatio = 0.0F;
    if (IMetadata::getEntry(metadata, kZoomRatioTag, zoomRatio, 0)) {
        object.field("zoomRatio", zoomRatio);
    }
    auto const crops =
        metadata == nullptr ? IMetadata::IEntry{} : metadata->entryFor(kCustomStreamCropTag, 0);
    std::vector<int32_t> items;
    for (uint32_t i = 0; i < crops.count(); ++i) {
        items.push_back(crops.itemAt<int32_t>(i));
    }
    object.table("customStreamCrops", items).end();
    return text;
}

}  // namespace

CallRecorder::CallRecorder(Settings const& settings) : mParts(settings), mPlatform(mParts) {
    mPlatform.noteProperties();
}

template <typename Write>
void CallRecorder::add(LineSubject subject, char const* op, Write write) {
    mLine.clear();
    Line line(mLine, op);
    write(line);
    line.number("t", static_cast<uint64_t>(bootNanoseconds())).end();
    mParts.add(subject, mLine);
}

template <typename Need>
void CallRecorder::addQuery(LineKind kind, char const* op, ZoomOverrideRequest const& request,
                            Need const& need, bool manual) {
    if (mMode == ZoomOverrideMode::ExternalAPI) {
        mPlatform.noteNewestEntry();
    }
    add({kind, request.requestNo}, op, [&](Line& line) {
        line.fields(request);
        if (manual) {
            line.field("manual", manual);
        }
        if (!scenario::isFresh(need)) {
            line.field("need", need);
        }
    });
}

void CallRecorder::configFspInfo(ZoomOverrideFspInfoConfig const& config) {
    add({LineKind::ConfigFspInfo}, "configFspInfo", [&](Line& line) { line.fields(config); });
}

void CallRecorder::configSensorInfo(ZoomOverrideSensorInfoConfig const& config) {
    add({LineKind::ConfigSensorInfo}, "configSensorInfo", [&](Line& line) { line.fields(config); });
}

void CallRecorder::configSensorBehaviorInfo(ZoomOverrideSensorBehaviorInfoConfig const& config) {
    add({LineKind::ConfigSensorBehaviorInfo}, "configSensorBehaviorInfo",
        [&](Line& line) { line.fields(config); });
}

void CallRecorder::getP1CropSetting(ZoomOverrideRequest const& request,
                                    ZoomOverrideP1Need const& need) {
    addQuery(LineKind::P1Query, "getP1CropSetting", request, need, false);
}

void CallRecorder::getP2CropSetting(ZoomOverrideRequest const& request,
                                    ZoomOverrideP2Need const& need, bool manual) {
    addQuery(LineKind::Other, "getP2CropSetting", request, need, manual);
}

void CallRecorder::get3ACropSetting(ZoomOverrideRequest const& request,
                                    ZoomOverride3ANeed const& need) {
    addQuery(LineKind::Other, "get3ACropSetting", request, need, false);
}

void CallRecorder::storeOverrideSetting(IMetadata const* metadata,
                                        std::unordered_map<uint32_t, uint64_t> const& streamIdMap) {
    add({LineKind::Metadata}, "storeOverrideSetting", [&](Line& line) {
        line.json("metadata", textOf(metadata)).table("streamIdMap", streamIdMap);
    });
}

void CallRecorder::storeOverrideSetting(uint32_t requestNo, OverrideNotice notice,
                                        ZoomOverrideSetting const* setting) {
    auto const kind =
        notice == OverrideNotice::Repeating ? LineKind::MovedSetting : LineKind::Setting;
    add({kind}, "storeOverrideSetting", [&](Line& line) {
        line.field("requestNo", requestNo);
        addNotice(line, notice);
        setting == nullptr ? line.json("setting", "null") : line.field("setting", *setting);
    });
}

void CallRecorder::onRequestDone(uint32_t requestNo) {
    add({LineKind::Done, requestNo}, "onRequestDone",
        [&](Line& line) { line.field("requestNo", requestNo); });
}

void CallRecorder::getZoomOverrideMode() {
    add({}, "getZoomOverrideMode", [](Line&) {});
}

void CallRecorder::initialize(ZoomOverrideMode mode) {
    mMode = mode;
    add({LineKind::Initialize}, "initialize", [&](Line& line) { line.field("mode", mode); });
}

void CallRecorder::setRunTimeCropNeedData(uint32_t requestNo, OverrideNotice notice,
                                          RunTimeCropNeedData const& data) {
    bool const isRepeating = notice == OverrideNotice::Repeating;
    if (!isRepeating) {
        mPlatform.noteSensors(data.sensorModes);
    }
    add({isRepeating ? LineKind::RepeatingDeposit : LineKind::Deposit, requestNo},
        "setRunTimeCropNeedData", [&](Line& line) {
            line.field("requestNo", requestNo);
            addNotice(line, notice);
            line.fields(data);
        });
}

void CallRecorder::getHistoryCropNeedData(int32_t requestNo) {
    add({}, "getHistoryCropNeedData", [&](Line& line) { line.field("requestNo", requestNo); });
}

void CallRecorder::isPortExist(int32_t sensorId, int32_t port) {
    add({}, "isPortExist",
        [&](Line& line) { line.field("sensorId", sensorId).field("port", port); });
}

void CallRecorder::correctTgCropRegion(int32_t sensorId, int32_t sensorMode, bool checkMinSize,
                                       MSize minSize, MRect const& crop) {
    mPlatform.noteSensor(sensorId, static_cast<uint32_t>(sensorMode));
    add({}, "correctTgCropRegion", [&](Line& line) {
        line.field("sensorId", sensorId)
            .field("sensorMode", sensorMode)
            .field("checkMinSize", checkMinSize)
            .field("minSize", minSize)
            .field("crop", crop);
    });
}

}  // namespace zoomrecorder
