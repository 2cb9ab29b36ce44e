// The jumps of a replay on the terminal.
#pragma once

#include <cstddef>

#include "Jumps.h"
#include "base/File.h"

namespace zoomreplay {

/// Writes the worst jumps when the replay is over, a line each, and how many there are beyond them.
class JumpList : public JumpFinder {
 public:
    /// @param file outlives the list
    JumpList(File& file, size_t limit) : mFile(file), mLimit(limit) {}

    void finish(ReplaySummary const& replay) override;

 private:
    File& mFile;
    size_t mLimit;
};

}  // namespace zoomreplay
