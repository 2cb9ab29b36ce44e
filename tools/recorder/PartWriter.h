// The record: lines go to the newest part, which is begun anew when it is full.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "LiveState.h"
#include "PartFiles.h"
#include "Settings.h"

namespace zoomrecorder {

/// One thread at a time.
class PartWriter {
 public:
    explicit PartWriter(Settings const& settings);

    /// Writes a line, which is in the file when this returns.
    void add(LineSubject subject, std::string_view line);

    /// How long the call of the last line took. Written together with the next line, as a write of
    /// its own would cost as much as that.
    void noteDuration(int64_t nanoseconds) { mDuration = nanoseconds; }

    /// Whether there is any use in going on.
    bool hasFailed() const { return mFiles.hasFailed(); }

    void giveUp(char const* why) { mFiles.giveUp(why); }

 private:
    bool isFull(size_t more) const;
    void startPart();
    bool appendDuration(std::string& out);
    void appendTime(std::string& out);

    uint64_t const mPartBytes;
    PartFiles mFiles;
    LiveState mState;
    uint64_t mHeadBytes = 0;  // of the newest part, written before its first own line
    std::optional<int64_t> mDuration;
    time_t mLastSecond = 0;
    std::string mText;  // reused
};

}  // namespace zoomrecorder
