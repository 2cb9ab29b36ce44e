// The P1 answers of the requests that are not done yet.
#include "P1Cache.h"

#include <iterator>

namespace NSCam::Feature {

namespace {

// A need that grows a field must have it copied below.
struct CopiedFields : ZoomOverrideNeedHeader {
    decltype(ZoomOverrideP1Need::tgCrops) tgCrops;
};
static_assert(sizeof(ZoomOverrideP1Need) == sizeof(CopiedFields), "copyNeed lacks a field");

using Crops = decltype(ZoomOverrideP1Need::tgCrops);

// Copying the table as a whole would make the ports of each sensor anew.
void copyInto(Crops& to, Crops const& from) {
    for (auto sensor = to.begin(); sensor != to.end();) {
        bool const isKept = from.count(sensor->first) != 0;
        sensor = isKept ? std::next(sensor) : to.erase(sensor);
    }
    for (auto const& [sensorId, ports] : from) {
        to[sensorId] = ports;
    }
}

}  // namespace

void copyNeed(ZoomOverrideP1Need const& from, ZoomOverrideP1Need& to) {
    if (to.tgCrops.empty()) {
        to = from;
        return;
    }
    static_cast<ZoomOverrideNeedHeader&>(to) = static_cast<ZoomOverrideNeedHeader const&>(from);
    copyInto(to.tgCrops, from.tgCrops);
}

P1Cache::Answer const* P1Cache::find(uint32_t requestNo) const {
    auto const answer = mAnswers.find(requestNo);
    return answer == mAnswers.end() ? nullptr : &answer->second;
}

void P1Cache::keep(uint32_t requestNo, bool overridden, ZoomOverrideP1Need const& need) {
    if (mForgotten.empty()) {
        mAnswers.try_emplace(requestNo, overridden, need);
        return;
    }
    auto node = std::move(mForgotten.back());
    mForgotten.pop_back();
    node.key() = requestNo;
    node.mapped().first = overridden;
    copyNeed(need, node.mapped().second);
    mAnswers.insert(std::move(node));
}

void P1Cache::forget(uint32_t requestNo) {
    if (auto node = mAnswers.extract(requestNo)) {
        mForgotten.push_back(std::move(node));
    }
}

void P1Cache::clear() {
    mAnswers.clear();
    mForgotten.clear();
}

}  // namespace NSCam::Feature
