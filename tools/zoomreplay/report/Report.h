// Writes a report: one page that shows a replay, request by request, and needs nothing beside it.
#pragma once

#include <string>

#include "PackedTable.h"
#include "PlainReport.h"
#include "base/File.h"
#include "recording/RequestRecord.h"

namespace zoomreplay {

/// Keeps of each request what the page shows of it, packed, and writes the page at the end.
class Report : public RequestConsumer {
 public:
    /// @param file outlives the report
    /// @param scenario its name, as the page tells it
    Report(File& file, std::string scenario, bool isLogged);

    void take(RequestRecord const& request, Rig const& rig) override;
    void finish(ReplayRecord const& replay) override;

 private:
    std::string data(ReplayRecord const& replay);

    File& mFile;
    std::string mScenario;
    bool mIsLogged;
    size_t mShown = 0;
    PackedTable mOverview;
    PackedTable mRequests;
    PlainReport mPlain;
};

}  // namespace zoomreplay
