// Host control of the two log sinks: captures the lines that the process writes. Kept by
// libqvxcam_ulog, fed by libqvxcam_ulog and libqvxcam.debugwrapper. Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace NSCam::Host {

/// Where a line went.
enum class LogSink { Print, Unified };

/// One line as its sink received it, fully formatted.
struct LogLine {
    LogSink sink;      ///< where it went
    int32_t level;     ///< as the sink numbers levels
    std::string text;  ///< with the prefix that the sink's lines have

    bool operator==(LogLine const&) const = default;
};

/// Starts and stops capturing. Lines go to liblog in either case. Stopping drops what is there.
void captureLog(bool on);

/// Takes the lines captured since the last call, oldest first, all threads together.
std::vector<LogLine> takeCapturedLog();

/// Hands a line of a sink on: to liblog, and to the capture when it is on. For the sinks only.
void deliverLogLine(LogSink sink, char const* tag, int32_t level, std::string_view text);

}  // namespace NSCam::Host
