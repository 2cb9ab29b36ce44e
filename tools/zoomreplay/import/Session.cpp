#include "Session.h"

#include <algorithm>
#include <map>

#include "SensorCrops.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {

using namespace scenario;

namespace {

using NSCam::MRect;
using NSCam::MSize;
using NSCam::Feature::ZoomOverrideMode;
using StreamSizes = std::map<int64_t, MSize>;

struct ModeText {
    std::string_view name;
    char const* comment;
};

std::map<ZoomOverrideMode, ModeText> const kModes{
    {ZoomOverrideMode::ExternalAPI,
     {"ExternalAPI",
      "// Each request finds published what the frame before asked for. P1 is overridden\n"
      "// where that is less than what the request asks for, P2 otherwise.\n"}},
    {ZoomOverrideMode::ByRequest,
     {"ByRequest",
      "// Each request finds a setting for the next one, with what that asks for. P2 is\n"
      "// overridden where that is not less than what the request asks for.\n"}},
    {ZoomOverrideMode::InstantRequest,
     {"InstantRequest",
      "// Each request's metadata has the zoom and the crops of the frame before. P1 is\n"
      "// overridden where that zoom is less than what the request asks for.\n"}},
};

int64_t streamOf(RigSensor const& sensor) {
    return NSCam::Feature::streamIdOf(sensor.id, NSCam::Feature::P1Port::P1_PORT_R1);
}

// The log does not tell the sizes of streams. A quarter of the sensor's mode, as a preview has,
// leaves room for zooming before the crops must not get smaller.
MSize streamSizeOf(RigSensor const& sensor) {
    constexpr int32_t kShare = 4;
    return {std::max(1, sensor.modeSize.w / kShare), std::max(1, sensor.modeSize.h / kShare)};
}

class Writer {
 public:
    Writer(File& scenario, PhoneRig const& rig, std::vector<WatchedFrame> const& frames,
           ZoomOverrideMode mode)
        : mScenario(scenario), mRig(rig), mFrames(frames), mMode(mode) {}

    void write() {
        writeSetUp();
        for (size_t i = 0; i < mFrames.size(); ++i) {
            writeRequest(i);
            flush(kChunk);
        }
        flush(0);
    }

 private:
    static constexpr size_t kChunk = size_t{64} << 10U;

    void flush(size_t longest) {
        if (mOut.size() > longest) {
            mScenario.write(mOut);
            mOut.clear();
        }
    }

    void writeSetUp() {
        auto const& [name, comment] = kModes.at(mMode);
        mOut += comment;
        for (auto const& line : mRig.platformLines) {
            mOut.append(line).append("\n");
        }
        begin("initialize");
        appendField(mOut, "mode", name);
        end();
        for (auto const& line : mRig.configLines) {
            mOut.append(line).append("\n");
        }
        if (mMode == ZoomOverrideMode::ExternalAPI && !mRig.hasPorts) {
            writePorts();
        }
    }

    // Without a port there is no P1 crop.
    void writePorts() {
        std::map<uint32_t, std::map<uint32_t, MSize>> ports;
        for (auto const& sensor : mRig.sensors) {
            ports[sensor.id] = {{NSCam::Feature::P1Port::P1_PORT_R1 & 0xFFU, sensor.modeSize}};
        }
        begin("configSensorBehaviorInfo");
        appendField(mOut, "portSizes", ports);
        end();
    }

    void writeRequest(size_t index) {
        mOut += "// Frame " + std::to_string(mFrames[index].number) + '\n';
        mRequestNo = static_cast<uint32_t>(index + 1);
        switch (mMode) {
            case ZoomOverrideMode::ExternalAPI:
                writePublish(before(index));
                break;
            case ZoomOverrideMode::ByRequest:
                writeSetting(after(index));
                break;
            default:
                writeMetadata(before(index));
                break;
        }
        writeDeposit(index == 0);
        writeQuery("getP1CropSetting", mFrames[index].zoomRatio);
        if (mMode != ZoomOverrideMode::InstantRequest) {  // a P2 query would stop the process
            writeQuery("getP2CropSetting", mFrames[index].zoomRatio);
        }
        begin("onRequestDone");
        appendField(mOut, "requestNo", mRequestNo);
        end();
    }

    WatchedFrame const& before(size_t index) const { return mFrames[index == 0 ? 0 : index - 1]; }
    WatchedFrame const& after(size_t index) const {
        return mFrames[std::min(index + 1, mFrames.size() - 1)];
    }

    void writePublish(WatchedFrame const& frame) {
        begin("publish");
        appendField(mOut, "zoomRatio", frame.zoomRatio);
        appendField(mOut, "enable", true);
        end();
    }

    void writeSetting(WatchedFrame const& frame) {
        auto const crops = cropsOf(frame, mRig.sensors);
        begin("storeOverrideSetting");
        appendField(mOut, "requestNo", mRequestNo + 1);
        mOut += R"(, "setting": {"overrideValid": true)";
        appendField(mOut, "requestNo", mRequestNo + 1);
        appendField(mOut, "zoomRatio", frame.zoomRatio);
        if (auto const master = crops.find(mRig.sensors.front().id); master != crops.end()) {
            appendField(mOut, "overrideRect", master->second);
        }
        appendField(mOut, "previewAaCrops", crops);
        mOut += '}';
        end();
    }

    void writeMetadata(WatchedFrame const& frame) {
        begin("storeOverrideSetting");
        mOut += R"(, "metadata": {"zoomRatio": )";
        appendJson(mOut, frame.zoomRatio);
        std::string items;
        std::map<uint32_t, int64_t> streams;
        for (auto const& [sensorId, crop] : cropsOf(frame, mRig.sensors)) {
            for (int32_t const item :
                 {static_cast<int32_t>(sensorId), crop.x, crop.y, crop.w, crop.h}) {
                items.append(items.empty() ? "" : ", ").append(std::to_string(item));
            }
        }
        for (auto const& sensor : mRig.sensors) {
            streams.emplace(sensor.id, streamOf(sensor));
        }
        mOut += R"(, "customStreamCrops": [)" + items + "]}";
        appendField(mOut, "streamIdMap", streams);
        end();
    }

    void writeDeposit(bool isFirst) {
        begin("setRunTimeCropNeedData");
        appendField(mOut, "requestNo", mRequestNo);
        if (isFirst) {
            std::map<uint32_t, uint32_t> modes;
            StreamSizes streams;
            for (auto const& sensor : mRig.sensors) {
                modes.emplace(sensor.id, sensor.mode);
                streams.emplace(streamOf(sensor), streamSizeOf(sensor));
            }
            appendField(mOut, "sensorModes", modes);
            appendField(mOut, "streamSizes", streams);
        } else {
            appendField(mOut, "notice", std::string_view("repeating"));
        }
        end();
    }

    void writeQuery(char const* op, float zoomRatio) {
        begin(op);
        appendField(mOut, "requestNo", mRequestNo);
        appendField(mOut, "zoomRatio", zoomRatio);
        appendField(mOut, "sensorId", mRig.sensors.front().id);
        end();
    }

    void begin(char const* op) { mOut.append(R"({"op": ")").append(op).append("\""); }
    void end() { mOut += "}\n"; }

    File& mScenario;
    PhoneRig const& mRig;
    std::vector<WatchedFrame> const& mFrames;
    ZoomOverrideMode mMode;
    uint32_t mRequestNo = 0;
    std::string mOut;
};

}  // namespace

void writeSession(File& scenario, PhoneRig const& rig, WatchLog const& log, ZoomOverrideMode mode) {
    Writer(scenario, rig, log.frames, mode).write();
}

}  // namespace zoomreplay
