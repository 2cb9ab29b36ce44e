// Tells a broadcast what becomes of the requests, as soon as it is known.
#pragma once

#include <chrono>
#include <deque>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Broadcast.h"
#include "jumps/Jumps.h"
#include "recording/ReplayedRequest.h"
#include "report/PackedTable.h"

namespace zoomreplay {

/// Packs requests as a report does, in the blocks of a report, but after each line about them: a
/// later record of a request takes the place of the one before. Small blocks are folded into blocks
/// of a report's size, so that a page that comes late is not told thousands.
class Feed : public RequestConsumer {
 public:
    using Clock = std::chrono::steady_clock;

    /// @param broadcast outlives the feed
    explicit Feed(Broadcast& broadcast) : mBroadcast(broadcast) {}

    void see(ReplayedRequest const& request, Rig const& rig) override;
    void take(ReplayedRequest const& request, Rig const& rig) override;
    void finish(ReplaySummary const& replay) override;

    /// When what is known must have been told; empty where nothing waits.
    std::optional<Clock::time_point> due() const { return mDue; }

    /// Tells what has not been told yet.
    void tell();

    /// The replay is over. @param trouble what ended it, empty for the end of the input
    void end(std::string_view trouble);

    /// Nobody will serve the page any more.
    void close();

    /// From now on nothing is told: this is a copy of the process.
    void silence() { mIsSilent = true; }

    /// The newest of the latest requests that meets a test; null where none does.
    ReplayedRequest const* newest(bool (*test)(ReplayedRequest const&)) const;

    /// A number that none of the latest requests has.
    uint32_t freeNumber() const;

    /// What has been seen last. In a copy only.
    ReplayedRequest const* seen() const { return mSeenInCopy; }

 private:
    /// A request as the page shows it.
    struct Row {
        PackedRow overview;
        PackedRow request;
    };
    struct JumpFound {
        double size;
        uint32_t sensorId;
        std::string words;

        bool operator==(JumpFound const&) const = default;
    };
    using Jumps = std::multimap<size_t, JumpFound>;  // by request
    /// What a message says, or those say that are to be folded.
    struct Said {
        std::map<size_t, Row> rows;
        size_t firstRig = 0, firstOverviewWords = 0, firstRequestWords = 0;
        std::optional<size_t> jumpsFrom;
    };

    void knowRig(size_t place, Rig const& rig);
    void add(ReplayedRequest const& request, bool isOver);
    void findJumps();
    void fold();
    std::string messageOf(Said const& said, bool isFold);

    Broadcast& mBroadcast;
    bool mIsSilent = false;
    ReplayedRequest const* mSeenInCopy = nullptr;
    std::optional<Clock::time_point> mDue;
    std::map<size_t, ReplayedRequest const*> mSeen;  // and not yet told, by index
    std::deque<Rig> mRigs;
    std::map<size_t, ReplayedRequest> mLatest;  // the requests between which jumps may be found
    Jumps mJumps;
    PackedTable mOverviews{std::numeric_limits<size_t>::max()};
    PackedTable mRequests{std::numeric_limits<size_t>::max()};
    Said mNew;
    Said mToFold;
    size_t mCount = 0;
};

}  // namespace zoomreplay
