// The progress line while many records are replayed.
#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "Records.h"

namespace zoomreplay {

/// Shows on standard error, from the second second on, how much has been read and how many records
/// are done. Only on a terminal.
class RunProgress {
 public:
    explicit RunProgress(std::vector<Record> const& records);

    void update(size_t ended, uint64_t bytesRead);

    /// Removes the line, before anything else is told on the terminal.
    void clear();

 private:
    using Clock = std::chrono::steady_clock;

    size_t mRecords;
    uint64_t mBytes = 0;
    bool mIsOn;
    bool mIsShown = false;
    Clock::time_point mStart = Clock::now();
};

}  // namespace zoomreplay
