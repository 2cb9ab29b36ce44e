// The debug print of a workstation.
#include "DebugWrapper.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "host/LogCapture.h"

// The host platform writes no lines of its own, so the levels that are the platform's are numbered.
constinit std::array<LogLevelInfo, kLogLevelCount> g_logInfoLv{{
    {"[D]", NSCam::LogSwitch<uint8_t>{kLogLevelOn}},
    {"[E]", NSCam::LogSwitch<uint8_t>{kLogLevelOn}},
    {"[W]", NSCam::LogSwitch<uint8_t>{kLogLevelOn}},
    {"[I]", NSCam::LogSwitch<uint8_t>{kLogLevelOn}},
    {"[4]", NSCam::LogSwitch<uint8_t>{kLogLevelOn}},
    {"[5]", NSCam::LogSwitch<uint8_t>{kLogLevelOn}},
    {"[6]", NSCam::LogSwitch<uint8_t>{kLogLevelOn}},
    {"[7]", NSCam::LogSwitch<uint8_t>{kLogLevelOn}},
}};

// Our lines show the path in the tree.
char const* get_filename_log_control(char const* path) {
    return path;
}

void log_dbg_print(char const* tag, int32_t level, char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char* line = nullptr;
    int const length = vasprintf(&line, format, arguments);
    va_end(arguments);
    if (length < 0) {
        return;
    }
    NSCam::Host::deliverLogLine(NSCam::Host::LogSink::Print, tag, level,
                                {line, static_cast<size_t>(length)});
    std::free(line);  // vasprintf's
}
