// Keeps every request until the replay is over, for those who need them all at once.
#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "RequestRecord.h"

namespace zoomreplay {

/// The requests of a replay, as they were deposited.
class KeptRequests : public RequestConsumer {
 public:
    using Writer = std::function<void(std::vector<RequestRecord> const&, ReplayRecord const&)>;

    explicit KeptRequests(Writer write) : mWrite(std::move(write)) {}

    void take(RequestRecord const& request, Rig const& /*rig*/) override {
        mRequests.push_back(request);
    }

    void finish(ReplayRecord const& replay) override {
        std::sort(mRequests.begin(), mRequests.end(),
                  [](auto const& a, auto const& b) { return a.index < b.index; });
        mWrite(mRequests, replay);
    }

 private:
    Writer mWrite;
    std::vector<RequestRecord> mRequests;
};

}  // namespace zoomreplay
