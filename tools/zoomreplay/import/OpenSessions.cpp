#include "OpenSessions.h"

#include <algorithm>

#include "PhoneText.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {
namespace {

bool takeInto(int32_t& number, std::string_view& text) {
    auto const taken = scenario::takeNumber<int32_t>(text);
    number = taken.value_or(0);
    return taken.has_value();
}

// "Dims: 1920 x 1080, format 0x22"
NSCam::MSize sizeOf(std::string_view text) {
    NSCam::MSize size;
    bool const isSize = takeInto(size.w, text) && skip(text, " x ") && takeInto(size.h, text);
    return isSize && size.w > 0 && size.h > 0 ? size : NSCam::MSize{};
}

}  // namespace

void OpenSessionReader::begin(std::string const& cameraId) {
    mIsOpen = true;
    mIsOutput = false;
    mSessions.push_back({cameraId, {}});
}

void OpenSessionReader::take(std::string_view line) {
    if (!mIsOpen) {
        return;
    }
    auto& streams = mSessions.back().streams;
    if (skip(line, "Stream[")) {
        OpenStream stream;
        bool const isStream = takeInto(stream.number, line) && stream.number >= 0;
        mIsOutput = isStream && skip(line, "]: Output");
        if (mIsOutput) {
            streams.push_back(stream);
        }
    } else if (mIsOutput && skip(line, "Dims: ")) {
        streams.back().size = sizeOf(line);
    } else if (mIsOutput &&
               (skip(line, "Physical camera id: ") || skip(line, "Physical Camera id: "))) {
        streams.back().physicalId = line;
    }
}

std::vector<OpenSession> OpenSessionReader::finish() {
    std::vector<OpenSession> open;
    for (auto& session : mSessions) {
        auto& streams = session.streams;
        streams.erase(std::remove_if(streams.begin(), streams.end(),
                                     [](OpenStream const& stream) { return stream.size.w == 0; }),
                      streams.end());
        bool const isKnown = std::any_of(open.begin(), open.end(), [&](OpenSession const& other) {
            return other.cameraId == session.cameraId;  // a bugreport prints it twice
        });
        if (!streams.empty() && !isKnown) {
            open.push_back(std::move(session));
        }
    }
    return open;
}

StreamTables streamTablesOf(OpenSession const& session,
                            std::vector<SensorOfCamera> const& sensors) {
    using NSCam::Feature::streamIdOf;
    namespace P1Port = NSCam::Feature::P1Port;
    StreamTables tables;
    for (auto const& sensor : sensors) {
        tables.sensorModes.emplace(sensor.sensorId, NSCam::Feature::kSensorNotStreaming);
        for (auto const& stream : session.streams) {
            if (stream.physicalId.empty() || stream.physicalId == sensor.cameraId) {
                tables.streamSizes.emplace(streamIdOf(sensor.sensorId, P1Port::P1_PORT_R1,
                                                      static_cast<uint32_t>(stream.number)),
                                           stream.size);
                tables.sensorModes[sensor.sensorId] = sensor.mode;
            }
        }
    }
    return tables;
}

std::string streamsComment(OpenSession const& session) {
    std::string out = "// Open camera " + session.cameraId + " had";
    char const* separator = " ";
    for (auto const& stream : session.streams) {
        out.append(separator).append("stream ").append(std::to_string(stream.number));
        out += ": " + std::to_string(stream.size.w) + " x " + std::to_string(stream.size.h);
        out += stream.physicalId.empty() ? "" : " of physical camera " + stream.physicalId;
        separator = ", ";
    }
    return out + ".\n";
}

}  // namespace zoomreplay
