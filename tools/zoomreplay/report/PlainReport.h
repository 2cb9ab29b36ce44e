// The report for a browser that runs no scripts: findings and the first requests as a plain table.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "Overview.h"
#include "recording/ReplayedRequest.h"

namespace zoomreplay {

class PlainReport {
 public:
    void take(ReplayedRequest const& request, Overview const& overview);

    /// Elements for the body of a page.
    std::string text(ReplaySummary const& replay) const;

 private:
    static constexpr size_t kMarks = 8;
    struct Count {
        size_t requests = 0;
        size_t firstIndex = 0;
        uint32_t firstNo = 0;
    };

    std::array<Count, kMarks> mCounts;
    std::map<size_t, std::string> mRows;
};

}  // namespace zoomreplay
