// The progress line of a long replay.
#pragma once

#include <chrono>
#include <cstdint>

#include "base/LineReader.h"

namespace zoomreplay {

/// Shows on standard error, from the second second on, how much of the input has been read and how
/// fast. Only on a terminal that does not show the results, too.
class Progress {
 public:
    /// @param scenario outlives the progress.
    Progress(LineReader const& scenario, File const& output);

    /// To be called for every line; costs next to nothing.
    void tick() {
        if (mIsOn && (++mTicks & 0xFFU) == 0) {
            update();
        }
    }

    /// Removes the line, before anything else is told on the terminal.
    void clear();

 private:
    using Clock = std::chrono::steady_clock;

    void update();

    LineReader const& mScenario;
    bool mIsOn;
    bool mIsShown = false;
    uint32_t mTicks = 0;
    Clock::time_point mStart = Clock::now();
    Clock::time_point mNext;
};

}  // namespace zoomreplay
