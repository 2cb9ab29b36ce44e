// The P1 answers of the requests that are not done yet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "ZoomOverrideTypes.h"

namespace NSCam::Feature {

/// Copies a need, whatever to held before, into the memory of the crops that to holds already.
void copyNeed(ZoomOverrideP1Need const& from, ZoomOverrideP1Need& to);

/// Keeps one answer per request number. Not locked.
///
/// The memory of answers that are forgotten serves later ones, so that keeping an answer allocates
/// nothing as long as no more requests are in flight than ever before.
class P1Cache {
 public:
    using Answer = std::pair<bool, ZoomOverrideP1Need>;

    /// The answer of a request, null when there is none. Valid until the cache changes.
    Answer const* find(uint32_t requestNo) const;

    /// Keeps a copy of the answer of a request that has none.
    void keep(uint32_t requestNo, bool overridden, ZoomOverrideP1Need const& need);

    void forget(uint32_t requestNo);
    void clear();
    size_t size() const { return mAnswers.size(); }

 private:
    using Answers = std::map<uint32_t, Answer>;

    Answers mAnswers;
    std::vector<Answers::node_type> mForgotten;
};

}  // namespace NSCam::Feature
