// The clock of a phone's traces.
#pragma once

#include <cstdint>
#include <ctime>

namespace zoomrecorder {

/// Nanoseconds since the device was started, time asleep included.
inline int64_t bootNanoseconds() {
    constexpr int64_t kPerSecond = 1000000000;
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * kPerSecond + now.tv_nsec;
}

}  // namespace zoomrecorder
