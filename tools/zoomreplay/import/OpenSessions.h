// The streams of cameras that were open while a dump was taken.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "CameraStatics.h"

namespace zoomreplay {

/// Takes the lines of a dump one by one.
class OpenSessionReader {
 public:
    /// The lines that follow tell how a camera is used.
    void begin(std::string const& cameraId);

    /// What follows is about something else.
    void end() { mIsOpen = false; }

    void take(std::string_view line);

    /// The sessions that have streams with a size.
    std::vector<OpenSession> finish();

 private:
    std::vector<OpenSession> mSessions;
    bool mIsOpen = false;
    bool mIsOutput = false;  // the last session's last stream is being described
};

/// A sensor of a rig, the camera that it is, and its mode.
struct SensorOfCamera {
    uint32_t sensorId = 0;
    std::string cameraId;
    uint32_t mode = 0;
};

/// What streams in a request, as setRunTimeCropNeedData takes it.
struct StreamTables {
    std::map<uint32_t, uint32_t> sensorModes;
    std::map<int64_t, NSCam::MSize> streamSizes;
};

/// A session's streams, on port 0x7001 and numbered as the phone numbers them. A stream that is not
/// bound to a physical camera can come from any of the sensors, and so is there for each. Sensors
/// without a stream do not stream.
StreamTables streamTablesOf(OpenSession const& session, std::vector<SensorOfCamera> const& sensors);

/// The session's streams as a comment says them, with its line end.
std::string streamsComment(OpenSession const& session);

}  // namespace zoomreplay
