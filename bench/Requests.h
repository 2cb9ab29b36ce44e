// What the cases of whole requests share: requests pass one after the other, a fixed number of them
// in flight; each is deposited, asked about and, some requests later, done.
#pragma once

#include <map>

#include "Queries.h"

namespace Bench {

class Requests : public Work {
 public:
    Requests(int calls, NSCam::Feature::ZoomOverrideMode mode, Rig rig, int inFlight)
        : mRig(std::move(rig)),
          mMgr(startManager(mode, mRig)),
          mCalls(calls),
          mInFlight(inFlight),
          mData(mRig.data) {
        depositRequests(*mMgr, mRig, inFlight);
        for (int number = 0; number < inFlight; ++number) {
            depositAtFloor(number);
        }
    }

    void module() override {
        int number = mModuleNext;
        mModuleNext += mCalls;
        for (; number < mModuleNext; ++number) {
            mMgr->setRunTimeCropNeedData(
                static_cast<uint32_t>(number), NSCam::Feature::OverrideNotice::Default,
                std::move(mData));  // NOLINT(bugprone-use-after-move): the manager copies
            mModuleLast = {};
            askModule(number, mModuleLast);
            mMgr->onRequestDone(static_cast<uint32_t>(number - mInFlight));
        }
    }

    void floor() override {
        int number = mFloorNext;
        mFloorNext += mCalls;
        for (; number < mFloorNext; ++number) {
            depositAtFloor(number);
            mFloorLast = {};
            askFloor(number, *mFloorData.find(static_cast<uint32_t>(number))->second, mFloorLast);
            mFloorData.erase(static_cast<uint32_t>(number - mInFlight));
        }
    }

    bool agree() const override {
        return scenario::areSame(mModuleLast.p1, mFloorLast.p1) &&
               scenario::areSame(mModuleLast.p2, mFloorLast.p2);
    }

 protected:
    /// The needs of one request.
    struct Needs {
        ZoomOverrideP1Need p1;
        ZoomOverrideP2Need p2;
    };

    virtual void askModule(int number, Needs& needs) = 0;
    virtual void askFloor(int number, NSCam::Feature::RunTimeCropNeedData const& data,
                          Needs& needs) = 0;

    Rig& rig() { return mRig; }
    NSCam::Feature::IZoomOverrideMgr& mgr() { return *mMgr; }

 private:
    void depositAtFloor(int number) {
        mFloorData.emplace(static_cast<uint32_t>(number),
                           std::make_shared<NSCam::Feature::RunTimeCropNeedData>(mData));
    }

    Rig mRig;
    std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> mMgr;
    int mCalls;
    int mInFlight;
    int mModuleNext = mInFlight;
    int mFloorNext = mInFlight;
    NSCam::Feature::RunTimeCropNeedData mData;
    std::map<uint32_t, std::shared_ptr<NSCam::Feature::RunTimeCropNeedData>> mFloorData;
    Needs mModuleLast;
    Needs mFloorLast;
};

}  // namespace Bench
