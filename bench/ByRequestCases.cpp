// By-request mode: P1 and P2 by the number of sensors, whole requests.
#include "Case.h"
#include "Floor.h"
#include "Queries.h"
#include "Requests.h"

namespace Bench {

using NSCam::Feature::OverrideNotice;
using NSCam::Feature::ZoomOverrideMode;

namespace {

constexpr uint32_t kStreamsPerSensor = 4;

class P1 final : public Queries<ZoomOverrideP1Need> {
 public:
    P1(int calls, uint32_t sensors)
        : Queries(calls, ZoomOverrideMode::ByRequest,
                  makeRig(sensors, kStreamsPerSensor * sensors)) {
        mgr().storeOverrideSetting(0, OverrideNotice::Default, rig().setting);
    }

 private:
    bool askModule(int number, ZoomOverrideP1Need& need) override {
        return mgr().getP1CropSetting(requestOf(number, kBelowOverride), need);
    }

    bool askFloor(int /*number*/, ZoomOverrideP1Need& need) override {
        return Floor::byRequestP1(*rig().setting, need);
    }
};

class P2 final : public Queries<ZoomOverrideP2Need> {
 public:
    P2(int calls, uint32_t sensors)
        : Queries(calls, ZoomOverrideMode::ByRequest,
                  makeRig(sensors, kStreamsPerSensor * sensors)) {
        mgr().storeOverrideSetting(0, OverrideNotice::Default, rig().setting);
    }

 private:
    bool askModule(int number, ZoomOverrideP2Need& need) override {
        return mgr().getP2CropSetting(requestOf(number, kBelowOverride), need, false);
    }

    bool askFloor(int number, ZoomOverrideP2Need& need) override {
        return Floor::byRequestP2(*rig().setting, rig().data, rig().outputSizes,
                                  requestOf(number, kBelowOverride), need);
    }
};

class WholeRequests final : public Requests {
 public:
    WholeRequests(int calls, uint32_t sensors, int inFlight)
        : Requests(calls, ZoomOverrideMode::ByRequest,
                   makeRig(sensors, kStreamsPerSensor * sensors), inFlight) {}

 private:
    void askModule(int number, Needs& needs) override {
        auto const request = requestOf(number, kBelowOverride);
        mgr().storeOverrideSetting(request.requestNo, OverrideNotice::Default, rig().setting);
        mgr().getP1CropSetting(request, needs.p1);
        mgr().getP2CropSetting(request, needs.p2, false);
    }

    void askFloor(int number, NSCam::Feature::RunTimeCropNeedData const& data,
                  Needs& needs) override {
        mKept = rig().setting;
        Floor::byRequestP1(*mKept, needs.p1);
        Floor::byRequestP2(*mKept, data, rig().outputSizes, requestOf(number, kBelowOverride),
                           needs.p2);
    }

    std::shared_ptr<NSCam::Feature::ZoomOverrideSetting> mKept;
};

}  // namespace

std::vector<Case> byRequestCases() {
    std::vector<Case> cases;
    cases.push_back(makeCase<P1>("by-request/P1/sensors:5", kQueries, 5U));
    for (uint32_t const sensors : {1U, 2U, 5U, 16U}) {
        cases.push_back(
            makeCase<P2>("by-request/P2/sensors:" + std::to_string(sensors), kQueries, sensors));
    }
    for (int const inFlight : {1, 8, 64}) {
        cases.push_back(makeCase<WholeRequests>(
            "by-request/request/in-flight:" + std::to_string(inFlight), kQueries, 2U, inFlight));
    }
    return cases;
}

}  // namespace Bench
