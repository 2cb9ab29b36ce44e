// Writes logged frames as the requests of a scenario, a way for each mode.
#include "Session.h"

#include <algorithm>
#include <array>
#include <map>

#include "CustomZoomRatioOverride.h"
#include "SensorCrops.h"
#include "scenario/text/Line.h"
#include "scenario/text/Modes.h"

namespace zoomreplay {

using namespace scenario;

namespace {

using NSCam::MRect;
using NSCam::MSize;
using NSCam::Feature::ZoomOverrideMode;

char const* commentOf(ZoomOverrideMode mode) {
    switch (mode) {
        case ZoomOverrideMode::None:
            break;
        case ZoomOverrideMode::ExternalAPI:
            return "// Each request finds published what the frame before asked for. P1 is "
                   "overridden\n"
                   "// where that is less than what the request asks for, P2 otherwise.\n";
        case ZoomOverrideMode::ByRequest:
            return "// Each request finds a setting for the next one, with what that asks for. P2 "
                   "is\n"
                   "// overridden where that is not less than what the request asks for.\n";
        case ZoomOverrideMode::InstantRequest:
            return "// Each request's metadata has the zoom and the crops of the frame before. P1 "
                   "is\n"
                   "// overridden where that zoom is less than what the request asks for.\n";
    }
    return "";
}

// Where the phone logs no time, none is written.
void end(Line& line, uint64_t nanoseconds) {
    if (nanoseconds > 0) {
        line.number("t", nanoseconds);
    }
    line.end();
}

int64_t streamOf(RigSensor const& sensor) {
    return NSCam::Feature::streamIdOf(sensor.id, NSCam::Feature::P1Port::P1_PORT_R1);
}

// Without an open session nobody tells the sizes of streams. A quarter of the sensor's mode, as a
// preview has, leaves room for zooming before the crops must not get smaller.
MSize streamSizeOf(RigSensor const& sensor) {
    constexpr int32_t kShare = 4;
    return {std::max(1, sensor.modeSize.w / kShare), std::max(1, sensor.modeSize.h / kShare)};
}

std::optional<int64_t> firstStreamOf(StreamTables const& tables, uint32_t sensorId) {
    auto const found =
        std::find_if(tables.streamSizes.begin(), tables.streamSizes.end(), [&](auto const& stream) {
            return NSCam::Feature::sensorIdOfStream(stream.first) == sensorId;
        });
    return found == tables.streamSizes.end() ? std::nullopt : std::optional(found->first);
}

// The tables of the first request; where the rig has none, stand-ins.
StreamTables tablesOf(PhoneRig const& rig) {
    StreamTables tables = rig.streams.value_or(StreamTables{});
    for (auto const& sensor : rig.sensors) {
        bool const isKnown = rig.streams.has_value();
        tables.sensorModes.emplace(sensor.id,
                                   isKnown ? NSCam::Feature::kSensorNotStreaming : sensor.mode);
        bool const streams =
            tables.sensorModes.at(sensor.id) != NSCam::Feature::kSensorNotStreaming;
        if (streams && !firstStreamOf(tables, sensor.id).has_value()) {
            tables.streamSizes.emplace(streamOf(sensor), streamSizeOf(sensor));
        }
    }
    return tables;
}

// The whole array, where nothing else is asked for; from its corner on, wherever that lies.
MRect wholeArray(PhoneRig const& rig) {
    auto const& array = rig.sensors.front().info.activeArray;
    return {0, 0, array.w, array.h};
}

bool isInside(MRect const& rect, MRect const& array) {
    return rect.x >= 0 && rect.y >= 0 && rect.w <= array.w - rect.x && rect.h <= array.h - rect.y;
}

// How much a crop region magnifies. One that only has another shape does not.
float magnification(MRect const& region, MRect const& array) {
    return std::max(1.0F, std::min(static_cast<float>(array.w) / static_cast<float>(region.w),
                                   static_cast<float>(array.h) / static_cast<float>(region.h)));
}

constexpr size_t kChunk = size_t{64} << 10U;

}  // namespace

Session::Session(File& scenario, PhoneRig const& rig, ZoomOverrideMode mode)
    : mScenario(scenario), mRig(rig), mMode(mode) {
    writeSetUp();
}

void Session::request(WatchedFrame const& frame) {
    Request const request = makeRequest(frame);
    if (isWrittenLate()) {
        if (mLatest.has_value()) {
            write(*mLatest, request);
        }
    } else {
        write(request, mLatest.value_or(request));
    }
    mLatest = request;
}

void Session::observe(WatchedFrame const& frame) {
    auto const request = std::find_if(mRecent.rbegin(), mRecent.rend(), [&](Request const& recent) {
        return recent.frame.number <= frame.number;
    });
    auto const& [zoomRatio, cropRegion, activeId] = frame.values;
    if (request == mRecent.rend() || (!zoomRatio && !cropRegion && !activeId)) {
        return;
    }
    Line line(request->number > mNumber ? mHeld : mOut, "observed");
    line.field("requestNo", request->number);
    if (zoomRatio.has_value()) {
        line.field("zoomRatio", *zoomRatio);
    }
    if (cropRegion.has_value()) {
        line.field("cropRegion", *cropRegion);
    }
    if (activeId.has_value()) {
        line.field("activePhysicalId", std::string_view(*activeId));
    }
    end(line, frame.time);
}

void Session::finish() {
    if (isWrittenLate() && mLatest.has_value()) {
        write(*mLatest, *mLatest);
    }
    flush();
}

void Session::flush() {
    mScenario.write(mOut);
    mOut.clear();
}

// A setting counts for the request after its own: what that asks for must be known.
bool Session::isWrittenLate() const {
    return traitsOf(mMode).source == OverrideSource::Setting;
}

template <typename Write>
void Session::add(char const* op, Write write) {
    Line line(mOut, op);
    write(line);
    end(line, mTime);
}

std::string Session::complaint() const {
    auto const array = wholeArray(mRig);
    return mOutside == 0 ? ""
                         : "crop regions outside the master's array of " + std::to_string(array.w) +
                               "x" + std::to_string(array.h) + ": " + std::to_string(mOutside) +
                               ", first in frame " + std::to_string(mFirstOutside) +
                               "; is the rig of another camera or phone?";
}

Session::Request Session::makeRequest(WatchedFrame const& frame) {
    constexpr size_t kLongestPipeline = 256;
    auto const array = wholeArray(mRig);
    auto const& region = frame.values.cropRegion;
    Request request{mLatest.has_value() ? mLatest->number + 1 : 1, frame,
                    frame.values.zoomRatio.value_or(1.0F)};
    if (frame.isZoomedByRegion) {
        request.zoomRatio = magnification(*region, array);
    }
    if (region.has_value() && !isInside(*region, array) && mOutside++ == 0) {
        mFirstOutside = frame.number;
    }
    if (mLatest.has_value() && frame.number <= mLatest->frame.number) {
        mRecent.clear();  // the camera was opened anew
    }
    mRecent.push_back(request);
    if (mRecent.size() > kLongestPipeline) {
        mRecent.pop_front();
    }
    return request;
}

void Session::write(Request const& request, Request const& source) {
    mOut += "// Frame " + std::to_string(request.frame.number) +
            (request.frame.isZoomedByRegion ? ", zoomed by its crop region\n" : "\n");
    mNumber = request.number;
    mTime = request.frame.time;
    switch (traitsOf(mMode).source) {
        case OverrideSource::Published:
            writePublish(source);
            break;
        case OverrideSource::Setting:
            writeSetting(source);
            break;
        case OverrideSource::Metadata:
            writeMetadata(source);
            break;
        case OverrideSource::None:
            break;
    }
    writeDeposit();
    writeQuery("getP1CropSetting", request.zoomRatio);
    if (traitsOf(mMode).answersP2) {
        writeQuery("getP2CropSetting", request.zoomRatio);
    }
    add("onRequestDone", [&](Line& line) { line.field("requestNo", mNumber); });
    mOut += mHeld;
    mHeld.clear();
    if (mOut.size() > kChunk) {
        flush();
    }
}

void Session::writeSetUp() {
    mOut += commentOf(mMode);
    if (!mRig.streams.has_value()) {
        mOut += "// Sizes of streams were not told: a quarter of each sensor's mode stands in.\n";
    }
    for (auto const& line : mRig.platformLines) {
        mOut.append(line).append("\n");
    }
    add("initialize", [&](Line& line) { line.word("mode", nameOf(mMode)); });
    for (auto const& line : mRig.configLines) {
        mOut.append(line).append("\n");
    }
    if (traitsOf(mMode).takesSensors && !mRig.hasPorts) {
        writePorts();
    }
}

// Without a port there is no P1 crop.
void Session::writePorts() {
    NSCam::Feature::ZoomOverrideSensorBehaviorInfoConfig config;
    for (auto const& sensor : mRig.sensors) {
        config.portSizes[sensor.id] = {
            {NSCam::Feature::P1Port::P1_PORT_R1 & 0xFFU, sensor.modeSize}};
    }
    add("configSensorBehaviorInfo", [&](Line& line) { line.fields(config); });
}

void Session::writePublish(Request const& source) {
    NSCam::v3::CustomZoomRatioOverride const entry{.zoomRatio = source.zoomRatio, .enable = true};
    add("publish", [&](Line& line) { line.fields(entry); });
}

void Session::writeSetting(Request const& source) {
    auto const crops = cropsOf(source.frame.values, mRig.sensors);
    std::string text;
    Object setting(text);
    setting.field("overrideValid", true)
        .field("requestNo", mNumber + 1)
        .field("zoomRatio", source.zoomRatio);
    if (auto const master = crops.find(mRig.sensors.front().id); master != crops.end()) {
        setting.field("overrideRect", master->second);
    }
    setting.field("previewAaCrops", crops).end();
    add("storeOverrideSetting",
        [&](Line& line) { line.field("requestNo", mNumber + 1).json("setting", text); });
}

// A sensor's crop is for its first stream, which is the preview of most applications.
void Session::writeMetadata(Request const& source) {
    auto const tables = tablesOf(mRig);
    std::vector<int32_t> items;
    std::map<uint32_t, int64_t> streams;
    for (auto const& [sensorId, crop] : cropsOf(source.frame.values, mRig.sensors)) {
        items.insert(items.end(), {static_cast<int32_t>(sensorId), crop.x, crop.y, crop.w, crop.h});
    }
    for (auto const& sensor : mRig.sensors) {
        streams.emplace(sensor.id, firstStreamOf(tables, sensor.id).value_or(streamOf(sensor)));
    }
    std::string metadata;
    Object(metadata).field("zoomRatio", source.zoomRatio).field("customStreamCrops", items).end();
    add("storeOverrideSetting",
        [&](Line& line) { line.json("metadata", metadata).field("streamIdMap", streams); });
}

void Session::writeDeposit() {
    add("setRunTimeCropNeedData", [&](Line& line) {
        line.field("requestNo", mNumber);
        if (mNumber == 1) {
            auto const tables = tablesOf(mRig);
            line.field("sensorModes", tables.sensorModes).field("streamSizes", tables.streamSizes);
        } else {
            line.word("notice", "repeating");
        }
    });
}

void Session::writeQuery(char const* op, float zoomRatio) {
    NSCam::Feature::ZoomOverrideRequest const request{
        .requestNo = mNumber,
        .zoomRatio = zoomRatio,
        .sensorId = static_cast<int32_t>(mRig.sensors.front().id)};
    add(op, [&](Line& line) { line.fields(request); });
}

}  // namespace zoomreplay
