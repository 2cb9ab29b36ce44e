// Writes a report: one page that shows a replay, request by request, and needs nothing beside it.
#pragma once

#include <string>

#include "PackedTable.h"
#include "PlainReport.h"
#include "base/File.h"
#include "jumps/Jumps.h"
#include "recording/ReplayedRequest.h"
#include "results/Compare.h"

namespace zoomreplay {

/// Keeps of each request what the page shows of it, packed, and writes the page at the end.
class Report : public RequestConsumer {
 public:
    /// What there is beside the requests.
    struct Shown {
        bool isLogged;
        bool isCompared;
    };

    /// @param file outlives the report
    /// @param scenario its name, as the page tells it
    Report(File& file, std::string scenario, Shown shown);

    void take(ReplayedRequest const& request, Rig const& rig) override;
    void finish(ReplaySummary const& replay) override;

    /// Something that differs from an earlier replay, before finish().
    void take(Difference const& difference);

 private:
    std::string data(ReplaySummary const& replay);

    File& mFile;
    std::string mScenario;
    Shown mShown;
    size_t mCount = 0;
    PackedTable mOverview;
    PackedTable mRequests;
    PackedTable mDifferences;
    size_t mDifferenceCount = 0;
    JumpFinder mJumps;
    PlainReport mPlain;
};

}  // namespace zoomreplay
