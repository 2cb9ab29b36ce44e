// External-API mode: P1 and P2 by the number of sensors, whole requests.
#include "Case.h"
#include "Floor.h"
#include "Queries.h"
#include "Requests.h"

namespace Bench {

using NSCam::Feature::SensorCropMapperConfig;
using NSCam::Feature::ZoomOverrideMode;

namespace {

constexpr uint32_t kStreamsPerSensor = 4;

SensorCropMapperConfig mapperConfig(Rig const& rig) {
    return {rig.sensorInfo.sensorIds, rig.sensorInfo.sensorInfos};
}

class P1 final : public Queries<ZoomOverrideP1Need> {
 public:
    P1(int calls, uint32_t sensors, P1Floor floor)
        : Queries(calls, ZoomOverrideMode::ExternalAPI,
                  makeRig(sensors, kStreamsPerSensor * sensors)),
          mFloor(floor),
          mAnswers(calls),
          mConfig(mapperConfig(rig())) {
        publishRatio(kOverrideRatio);
    }

 private:
    bool askModule(int number, ZoomOverrideP1Need& need) override {
        return mgr().getP1CropSetting(requestOf(number, kAboveOverride), need);
    }

    bool askFloor(int number, ZoomOverrideP1Need& need) override {
        Floor::externalP1(*mReader, rig(), mConfig, rig().data, requestOf(number, kAboveOverride),
                          need);
        if (mFloor == P1Floor::Keeping) {
            mAnswers.keep(number, need);
        }
        return true;
    }

    P1Floor mFloor;
    KeptAnswers mAnswers;
    std::shared_ptr<CustomRatio::Reader> mReader = ratioReader();
    SensorCropMapperConfig mConfig;
};

class P2 final : public Queries<ZoomOverrideP2Need> {
 public:
    P2(int calls, uint32_t sensors)
        : Queries(calls, ZoomOverrideMode::ExternalAPI,
                  makeRig(sensors, kStreamsPerSensor * sensors)),
          mConfig(mapperConfig(rig())) {
        publishRatio(kOverrideRatio);
    }

 private:
    bool askModule(int number, ZoomOverrideP2Need& need) override {
        return mgr().getP2CropSetting(requestOf(number, kBelowOverride), need, false);
    }

    bool askFloor(int number, ZoomOverrideP2Need& need) override {
        return Floor::externalP2(*mReader, rig(), mConfig, rig().data,
                                 requestOf(number, kBelowOverride), need);
    }

    std::shared_ptr<CustomRatio::Reader> mReader = ratioReader();
    SensorCropMapperConfig mConfig;
};

/// P1 overrides, P2 does not: one of the two does in each request.
class WholeRequests final : public Requests {
 public:
    WholeRequests(int calls, uint32_t sensors, int inFlight)
        : Requests(calls, ZoomOverrideMode::ExternalAPI,
                   makeRig(sensors, kStreamsPerSensor * sensors), inFlight),
          mConfig(mapperConfig(rig())) {
        publishRatio(kOverrideRatio);
    }

 private:
    void askModule(int number, Needs& needs) override {
        auto const request = requestOf(number, kAboveOverride);
        mgr().getP1CropSetting(request, needs.p1);
        mgr().getP2CropSetting(request, needs.p2, false);
    }

    void askFloor(int number, NSCam::Feature::RunTimeCropNeedData const& data,
                  Needs& needs) override {
        auto const request = requestOf(number, kAboveOverride);
        Floor::externalP1(*mReader, rig(), mConfig, data, request, needs.p1);
        Floor::externalP2(*mReader, rig(), mConfig, data, request, needs.p2);
    }

    std::shared_ptr<CustomRatio::Reader> mReader = ratioReader();
    SensorCropMapperConfig mConfig;
};

}  // namespace

std::vector<Case> externalApiCases() {
    std::vector<Case> cases;
    for (uint32_t const sensors : {1U, 2U, 5U, 16U}) {
        auto const name = "sensors:" + std::to_string(sensors);
        cases.push_back(makeCase<P1>("external/P1/" + name, kQueries, sensors, P1Floor::Bare));
        cases.push_back(
            makeCase<P1>("external/P1-keeping/" + name, kQueries, sensors, P1Floor::Keeping));
    }
    for (uint32_t const sensors : {1U, 2U, 5U, 16U}) {
        cases.push_back(
            makeCase<P2>("external/P2/sensors:" + std::to_string(sensors), kQueries, sensors));
    }
    for (int const inFlight : {1, 8, 64}) {
        cases.push_back(makeCase<WholeRequests>(
            "external/request/in-flight:" + std::to_string(inFlight), kQueries, 2U, inFlight));
    }
    return cases;
}

}  // namespace Bench
