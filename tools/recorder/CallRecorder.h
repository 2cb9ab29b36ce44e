// Records calls as lines of a scenario, each with what the platform is about to answer in it.
#pragma once

#include <cstdint>
#include <string>

#include "BootClock.h"
#include "PartWriter.h"
#include "PlatformWatch.h"
#include "Settings.h"
#include "scenario/text/Line.h"

namespace zoomrecorder {

/// One thread at a time.
class CallRecorder {
 public:
    /// Begins the record; must come before the manager is created.
    explicit CallRecorder(Settings const& settings) : mParts(settings), mPlatform(mParts) {
        mPlatform.noteProperties();
    }

    bool hasFailed() const { return mParts.hasFailed(); }
    void giveUp(char const* why) { mParts.giveUp(why); }

    /// How long the call took that was recorded last.
    void noteDuration(int64_t nanoseconds) { mParts.noteDuration(nanoseconds); }

    /// What it notes comes before the call that is added next.
    PlatformWatch& platform() { return mPlatform; }

    /// Adds a call that is about to be made.
    /// @param write gets a scenario::Line for the call's arguments.
    template <typename Write>
    void add(LineSubject subject, char const* op, Write write) {
        mLine.clear();
        scenario::Line line(mLine, op);
        write(line);
        line.number("t", static_cast<uint64_t>(bootNanoseconds())).end();
        mParts.add(subject, mLine);
    }

 private:
    PartWriter mParts;
    PlatformWatch mPlatform;
    std::string mLine;  // reused
};

}  // namespace zoomrecorder
