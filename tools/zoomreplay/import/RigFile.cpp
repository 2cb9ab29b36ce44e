// Reads a rig as the lines of a scenario that it is, and checks that each mode can use it.
#include "RigFile.h"

#include <map>
#include <optional>

#include "ActiveArray.h"
#include "base/Messages.h"
#include "scenario/json/Document.h"
#include "scenario/json/LineError.h"
#include "scenario/json/Records.h"

namespace zoomreplay {

using namespace scenario;

using NSCam::MRect;
using NSCam::MSize;
using NSCam::Feature::ZoomOverrideSensorInfoConfig;

// What a sensor's mode must have for every zoom override mode to work with it.
struct RigMode {
    MSize size;
    bool hasMatrix = false;
};

// Overloads of read are found beside their Value only.
static void read(Value const& value, RigMode& result) {
    MRect window;
    std::vector<float> matrix;
    Fields fields(value);
    fields.required("size", result.size);
    bool const hasWindow = fields.optional("window", window);
    result.hasMatrix = fields.optional("matrix", matrix) || hasWindow;
    fields.finish();
    if (result.size.w <= 0 || result.size.h <= 0) {
        fields.fail("size: must be an area");
    }
    if (!result.hasMatrix) {
        fields.fail("has neither a window nor a matrix");
    }
}

namespace {

using RigModes = std::map<uint32_t, RigMode>;

class RigReader {
 public:
    void take(std::string_view line) {
        Value const value(mDocument.parse(line));
        Fields fields(value);
        std::string op;
        fields.required("op", op);
        if (op == "sensor") {
            takeSensor(fields);
        } else if (op == "configSensorInfo") {
            readFields(fields, mConfig.emplace());
            fields.finish();
        } else if (op == "setRunTimeCropNeedData") {
            takeStreams(fields);
            return;
        }

        if (op == "sensor" || op == "property" || op == "logger") {
            mRig.platformLines.emplace_back(line);
        } else if (op == "configSensorInfo" || op == "configFspInfo" ||
                   op == "configSensorBehaviorInfo") {
            mRig.configLines.emplace_back(line);
            mRig.hasPorts = mRig.hasPorts || op == "configSensorBehaviorInfo";
        } else {
            throw LineError(op + ": does not belong into a rig");
        }
    }

    PhoneRig finish() {
        if (!mConfig.has_value() || mConfig->sensorIds.empty()) {
            throw LineError("no configSensorInfo line names a sensor");
        }
        for (int32_t const id : mConfig->sensorIds) {
            try {
                mRig.sensors.push_back(sensorOf(id));
            } catch (LineError const& e) {
                throw LineError("sensor " + std::to_string(id) + ": " + e.what());
            }
        }
        return std::move(mRig);
    }

 private:
    void takeSensor(Fields& fields) {
        int32_t id = 0;
        RigModes modes;
        fields.required("id", id);
        fields.required("modes", modes);
        fields.finish();
        mModes.insert_or_assign(id, std::move(modes));
    }

    // What the phone's open camera streamed, whatever the request.
    void takeStreams(Fields& fields) {
        uint32_t requestNo = 0;
        StreamTables streams;
        fields.required("requestNo", requestNo);
        fields.required("sensorModes", streams.sensorModes);
        fields.required("streamSizes", streams.streamSizes);
        fields.finish();
        mRig.streams = std::move(streams);
    }

    RigSensor sensorOf(int32_t id) const {
        constexpr int32_t kHighestId = 0xFF;
        if (id < 0 || id > kHighestId) {
            throw LineError("its id has no room in a stream id, which has 0 to 255");
        }
        auto const modes = mModes.find(id);
        if (modes == mModes.end() || modes->second.empty()) {
            throw LineError("is configured, but no sensor line gives it a mode");
        }
        auto const [mode, details] = *modes->second.begin();

        auto const number = static_cast<uint32_t>(id);
        auto const info = mConfig->sensorInfos.find(number);
        if (info == mConfig->sensorInfos.end()) {
            throw LineError("has no entry in sensorInfos");
        }
        RigSensor const sensor{number, mode, details.size, *info->second};
        if (!isAngle(sensor.info.degreeH) || !isAngle(sensor.info.degreeV)) {
            throw LineError("degreeH and degreeV must be between 0 and 180");
        }
        if (!isArray(sensor.info.activeArray)) {
            throw LineError("activeArray must be an area with an origin that is not negative");
        }
        return sensor;
    }

    static bool isAngle(float degrees) { return degrees > 0.0F && degrees < 180.0F; }

    Document mDocument;
    PhoneRig mRig;
    std::map<int32_t, RigModes> mModes;
    std::optional<ZoomOverrideSensorInfoConfig> mConfig;
};

}  // namespace

PhoneRig readRig(LineReader& lines) {
    RigReader reader;
    while (auto const line = lines.next()) {
        try {
            reader.take(*line);
        } catch (LineError const& e) {
            throw UserError(lines.place() + ": " + e.what());
        }
    }
    try {
        return reader.finish();
    } catch (LineError const& e) {
        throw UserError(lines.file().name() + ": " + e.what());
    }
}

}  // namespace zoomreplay
