// The correction of TG crops and the default sensor crop mapper, on their own.
#include <array>

#include "Case.h"
#include "Floor.h"
#include "Rig.h"
#include "scenario/text/RecordFields.h"

namespace Bench {

using NSCam::Feature::ISensorCropMapperFactory;
using NSCam::Feature::SensorCropMapperConfig;
using NSCam::Feature::SensorCropOutput;
using NSCam::Feature::ZoomOverrideMode;

namespace {

/// Sensor 0 delivers 2304x1296.
struct Correction {
    char const* name;
    MRect crop;
};

constexpr MSize kMinSize{960, 540};
constexpr std::array<Correction, 4> kCorrections{{
    {"fits", {384, 216, 1536, 864}},
    {"moves", {1200, -40, 1536, 864}},
    {"shrinks", {0, 0, 3000, 2000}},
    {"grows", {700, 400, 480, 300}},
}};

constexpr std::array<uint32_t, 4> kMappedSensors{1, 2, 5, 16};

class CorrectTgCrop final : public Work {
 public:
    CorrectTgCrop(int calls, MRect crop) : mCalls(calls), mCrop(crop) {}

    void module() override {
        for (int i = 0; i < mCalls; ++i) {
            mModuleCrop = mCrop;
            mMgr->correctTgCropRegion(0, kSensorMode, true, kMinSize, mModuleCrop);
        }
    }

    void floor() override {
        for (int i = 0; i < mCalls; ++i) {
            mFloorCrop = mCrop;
            Floor::fitTgCrop(mRig.outputSizes.front(), true, kMinSize, mFloorCrop);
        }
    }

    bool agree() const override { return mModuleCrop == mFloorCrop; }

 private:
    Rig mRig = makeRig(1, 1);
    std::shared_ptr<NSCam::Feature::IZoomOverrideMgr> mMgr =
        startManager(ZoomOverrideMode::InstantRequest, mRig);
    int mCalls;
    MRect mCrop;
    MRect mModuleCrop;
    MRect mFloorCrop;
};

class Mapper final : public Work {
 public:
    Mapper(int calls, uint32_t sensors)
        : mRig(makeRig(sensors, sensors)),
          mConfig{mRig.sensorInfo.sensorIds, mRig.sensorInfo.sensorInfos},
          mMapper(ISensorCropMapperFactory::createSensorCropMapperInstance({.externalApi = true})),
          mModuleAnswers(static_cast<size_t>(calls)),
          mFloorAnswers(static_cast<size_t>(calls)) {
        mMapper->config(mConfig);
    }

    void prepare() override {
        mModuleAnswers.assign(mModuleAnswers.size(), {});
        mFloorAnswers.assign(mFloorAnswers.size(), {});
    }

    void module() override {
        for (auto& answer : mModuleAnswers) {
            mMapper->getSensorCrop({true, kOverrideRatio}, answer);
        }
    }

    void floor() override {
        for (auto& answer : mFloorAnswers) {
            Floor::mapCrops(mConfig, {true, kOverrideRatio}, answer);
        }
    }

    bool agree() const override {
        return scenario::areSame(mModuleAnswers.front(), mFloorAnswers.front());
    }

 private:
    Rig mRig;
    SensorCropMapperConfig mConfig;
    std::shared_ptr<NSCam::Feature::ISensorCropMapper> mMapper;
    std::vector<SensorCropOutput> mModuleAnswers;
    std::vector<SensorCropOutput> mFloorAnswers;
};

}  // namespace

std::vector<Case> geometryCases() {
    std::vector<Case> cases;
    cases.reserve(kCorrections.size() + kMappedSensors.size());
    for (auto const& correction : kCorrections) {
        cases.push_back(makeCase<CorrectTgCrop>(std::string("correction/") + correction.name,
                                                kSmallCalls, correction.crop));
    }
    for (auto const sensors : kMappedSensors) {
        cases.push_back(
            makeCase<Mapper>("mapper/sensors:" + std::to_string(sensors), kQueries, sensors));
    }
    return cases;
}

}  // namespace Bench
