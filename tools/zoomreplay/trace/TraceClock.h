// When the lines of a scenario happen in a trace.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "replay/Outcome.h"

namespace zoomreplay {

/// Nanoseconds.
struct Stretch {
    int64_t start = 0;
    int64_t duration = 0;
};

/// Lines happen one after the other, as calls do under the manager's lock: one begins at its time
/// if it has one, but not before its predecessor is over. A line that does not tell how long it
/// took gets what a viewer can still show: a microsecond, or a millisecond where no line so far
/// has told a time and there is no other scale.
class TraceClock {
 public:
    Stretch next(LineTime const& time) {
        constexpr int64_t kMicrosecond = 1000;
        constexpr int64_t kMillisecond = 1000000;
        constexpr int64_t kLast = std::numeric_limits<int64_t>::max();
        mIsReal = mIsReal || time.start.has_value();
        int64_t const start = std::max(time.start.value_or(0), mEnd);
        int64_t const untold = mIsReal ? kMicrosecond : kMillisecond;
        int64_t const wanted = std::max<int64_t>(time.duration.value_or(untold), 1);
        int64_t const duration = std::min(wanted, kLast - start);
        mEnd = start + duration;
        return {start, duration};
    }

    /// Whether the times are those of the boot time clock.
    bool isReal() const { return mIsReal; }

    /// When the last line is over.
    int64_t end() const { return mEnd; }

 private:
    int64_t mEnd = 0;
    bool mIsReal = false;
};

}  // namespace zoomreplay
