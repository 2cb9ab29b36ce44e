// libqvxcam_ulog: the unified logger.
#pragma once

#include <cstddef>
#include <cstdint>

#include "LogSwitch.h"

namespace NSCam::Utils::ULog {

/// The unified logger. The static members are the platform's switches; whoever logs tests them
/// before it formats anything.
class ULogger {
 public:
    virtual ~ULogger() = default;

    /// Takes over one formatted line of length characters. Any thread.
    virtual void print(uint32_t category, char const* tag, int32_t level, char const* text,
                       size_t length) = 0;

    /// Makes sure that everything printed so far is kept, before the process ends.
    virtual void flush(int32_t reason) = 0;

    /// Which sinks are on: bit 0 the debug print, any of the bits 0xA the unified logger.
    static LogSwitch<uint32_t> sMode;

    /// How much detail is wanted: 1 errors, 2 warnings, 3 information, 5 debug lines.
    static LogSwitch<int32_t> sDetailsLevel;

    /// The groups whose debug lines are wanted.
    static LogSwitch<uint32_t> sNormalDetailsMask;

    /// The platform's one logger; never null.
    static ULogger* sULogger;
};

}  // namespace NSCam::Utils::ULog
