// Writes a report: one page that shows a replay, request by request, and needs nothing beside it.
#pragma once

#include <string>

#include "PackedTable.h"
#include "PlainReport.h"
#include "base/File.h"
#include "jumps/Jumps.h"
#include "recording/ReplayedRequest.h"
#include "results/Compare.h"
#include "scenario/json/Json.h"

namespace zoomreplay {

/// Keeps of each request what the page shows of it, packed.
class Report : public RequestConsumer {
 public:
    /// What there is beside the requests.
    struct Shown {
        bool isLogged;
        bool isCompared;
    };

    /// What a page's data has whatever the requests. page/overview.js tells its fields.
    static scenario::Json head(std::string const& scenario, Shown shown);

    /// @param scenario its name, as the page tells it
    Report(std::string scenario, Shown shown);

    void take(ReplayedRequest const& request, Rig const& rig) override;
    void finish(ReplaySummary const& replay) override;

    /// Something that differs from an earlier replay, before finish().
    void take(Difference const& difference);

    /// The page, once the replay is over. @throws UserError
    void write(File& file);

 private:
    std::string data(ReplaySummary const& replay);

    std::string mScenario;
    Shown mShown;
    size_t mCount = 0;
    PackedTable mOverview;
    PackedTable mRequests;
    PackedTable mDifferences;
    size_t mDifferenceCount = 0;
    JumpFinder mJumps;
    PlainReport mPlain;
    ReplaySummary const* mReplay = nullptr;
};

}  // namespace zoomreplay
