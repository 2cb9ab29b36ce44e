// What the cases of the crop queries share: a batch of queries, each with a need of its own that
// starts empty.
#pragma once

#include <cstddef>
#include <vector>

#include "Case.h"
#include "IZoomOverrideMgr.h"
#include "Rig.h"
#include "scenario/text/RecordFields.h"

namespace Bench {

using NSCam::Feature::ZoomOverrideNeedHeader;
using NSCam::Feature::ZoomOverrideP1Need;
using NSCam::Feature::ZoomOverrideP2Need;
using NSCam::Feature::ZoomOverrideRequest;

/// Copies a need into one that has the same sensors and ports.
inline void copyIntoSameKeys(ZoomOverrideP1Need const& from, ZoomOverrideP1Need& to) {
    static_cast<ZoomOverrideNeedHeader&>(to) = static_cast<ZoomOverrideNeedHeader const&>(from);
    for (auto const& [sensorId, ports] : from.tgCrops) {
        to.tgCrops.find(sensorId)->second = ports;
    }
}

/// What the floor of a first P1 query does: makes the answer only, or keeps a copy of it too, as
/// the manager must to give the same answer again.
enum class P1Floor { Bare, Keeping };

/// The copies that a keeping floor makes: one a request, each in the memory of the one before.
class KeptAnswers {
 public:
    explicit KeptAnswers(int requests) : mAnswers(static_cast<size_t>(requests)) {}

    void keep(int number, ZoomOverrideP1Need const& need) {
        auto& kept = mAnswers[static_cast<size_t>(number)];
        if (kept.tgCrops.empty()) {
            kept = need;
            return;
        }
        copyIntoSameKeys(need, kept);
    }

 private:
    std::vector<ZoomOverrideP1Need> mAnswers;
};

/// The request of that number, as the application's zoom ratio asks for it.
inline ZoomOverrideRequest requestOf(int number, float zoomRatio) {
    return {.requestNo = static_cast<uint32_t>(number), .zoomRatio = zoomRatio, .sensorId = 0};
}

/// Queries for the requests 0 to calls - 1, which are deposited before a batch and done after it.
template <typename Need>
class Queries : public Work {
 public:
    Queries(int calls, NSCam::Feature::ZoomOverrideMode mode, Rig rig)
        : mRig(std::move(rig)), mMgr(startManager(mode, mRig)), mCalls(calls) {}

    void prepare() override {
        depositRequests(*mMgr, mRig, mCalls);
        mModuleAnswers.assign(static_cast<size_t>(mCalls), {});
        mFloorAnswers.assign(static_cast<size_t>(mCalls), {});
    }

    void finish() override {
        for (int number = 0; number < mCalls; ++number) {
            mMgr->onRequestDone(static_cast<uint32_t>(number));
        }
    }

    void module() override {
        for (int number = 0; number < mCalls; ++number) {
            auto& answer = mModuleAnswers[static_cast<size_t>(number)];
            answer.overridden = askModule(number, answer.need);
        }
    }

    void floor() override {
        for (int number = 0; number < mCalls; ++number) {
            auto& answer = mFloorAnswers[static_cast<size_t>(number)];
            answer.overridden = askFloor(number, answer.need);
        }
    }

    bool agree() const override {
        for (size_t i = 0; i < mModuleAnswers.size(); ++i) {
            if (mModuleAnswers[i].overridden != mFloorAnswers[i].overridden ||
                !scenario::areSame(mModuleAnswers[i].need, mFloorAnswers[i].need)) {
                return false;
            }
        }
        return true;
    }

 protected:
    virtual bool askModule(int number, Need& need) = 0;
    virtual bool askFloor(int number, Need& need) = 0;

    Rig& rig() { return mRig; }
    NSCam::Feature::IZoomOverrideMgr& mgr() { return *mMgr; }

 private:
    struct Answer {
        bool overridden = false;
        Need need;
    };

    Rig mRig;
    std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> mMgr;
    int mCalls;
    std::vector<Answer> mModuleAnswers;
    std::vector<Answer> mFloorAnswers;
};

}  // namespace Bench
