// libqvxcam.debugwrapper: the debug print, the second of the platform's log sinks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "LogSwitch.h"

/// What the debug print knows of one level.
struct LogLevelInfo {
    char const* prefix;              ///< written in front of every line of the level
    NSCam::LogSwitch<uint8_t> flag;  ///< bit 7: lines of the level are written
};

inline constexpr uint8_t kLogLevelOn = 0x80;
inline constexpr size_t kLogLevelCount = 8;

/// By level: 0 debug, 1 error, 2 warning, 3 information; the others are the platform's own.
extern std::array<LogLevelInfo, kLogLevelCount> g_logInfoLv;

/// The name under which the debug print shows a source file. It may be path itself.
char const* get_filename_log_control(char const* path);

/// Formats and writes one line. Any thread.
[[gnu::format(printf, 3, 4)]] void log_dbg_print(char const* tag, int32_t level, char const* format,
                                                 ...);
