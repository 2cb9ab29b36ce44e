// What a crop leaves of a sensor's view, by hand: a mode that reads (100, 200)/2000x1200 at half
// its size, another that reads (0, 0)/1600x1300 at a quarter.
#include "optics/FieldOfView.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>

namespace zoomreplay {
namespace {

using NSCam::MRect;
using NSCam::MSize;
using NSCam::Feature::ZoomOverrideSensorInfo;
using testing::ElementsAre;

constexpr uint32_t kSensor = 3;

Rig rigWithModes() {
    Rig rig;
    rig.modes[kSensor] = {{1, {MSize{1000, 600}, {{0.5F, -50.0F, 0.5F, -100.0F}}}},
                          {2, {MSize{400, 325}, {{0.25F, 0.0F, 0.25F, 0.0F}}}},
                          {3, {MSize{9000, 9000}, {}}},
                          {4, {MSize{9000, 9000}, {{0.0F, 0.0F, 0.5F, 0.0F}}}}};
    return rig;
}

NSCam::Feature::ZoomOverrideSensorInfoConfig configOf(uint32_t sensorId, float degreeH) {
    auto const info = std::make_shared<ZoomOverrideSensorInfo>();
    info->degreeH = degreeH;
    info->degreeV = 53.130104F;  // half of it has the tangent 1/2
    info->activeArray = {100, 200, 2000, 1000};
    return {.sensorIds = {static_cast<int32_t>(sensorId)}, .sensorInfos = {{sensorId, info}}};
}

constexpr MRect kCrop{100, 60, 500, 150};  // mode 1, in the active array (300, 320)/1000x300

// Together the modes read (0, 0)/2100x1400.
TEST(FieldOfViewTest, CropIsAShareOfWhatAllModesRead) {
    Rig const rig = rigWithModes();
    EXPECT_FALSE(hasConfiguredArray(rig, kSensor));
    EXPECT_THAT(*activeArrayOf(rig, kSensor), ElementsAre(0, 0, 2100, 1400));
    EXPECT_THAT(*readoutOf(*findMode(rig, kSensor, 1)), ElementsAre(100, 200, 2000, 1200));

    auto const view = viewOf(rig, kSensor, 1, kCrop, Domain::Tg);
    ASSERT_TRUE(view.has_value());
    EXPECT_THAT(view->area, ElementsAre(300, 320, 1000, 300));
    EXPECT_DOUBLE_EQ(view->share, 1000.0 / 2100.0);
    EXPECT_FALSE(view->sight.has_value());
    EXPECT_THAT(viewOf(rig, kSensor, 1, kCrop, Domain::ActiveArray)->area,
                ElementsAre(100, 60, 500, 150));
}

// Columns 200 to 1200 of 2000 and rows 120 to 420 of 1000: -0.8, 0.2 and -0.3 times the tangent 1,
// -0.76, -0.16 and -0.46 times 1/2.
TEST(FieldOfViewTest, LensesTellTheAnglesOfACrop) {
    Rig rig = rigWithModes();
    configure(rig, configOf(kSensor, 90.0F));
    EXPECT_EQ(rig.master, kSensor);
    EXPECT_THAT(*activeArrayOf(rig, kSensor), ElementsAre(100, 200, 2000, 1000));

    auto const view = viewOf(rig, kSensor, 1, kCrop, Domain::Tg);
    EXPECT_DOUBLE_EQ(view->share, 0.5);
    constexpr double kNear = 1e-4;
    EXPECT_NEAR(view->sight->across.from, -38.65981, kNear);
    EXPECT_NEAR(view->sight->across.to, 11.30993, kNear);
    EXPECT_NEAR(view->sight->across.centre, -16.69924, kNear);
    EXPECT_NEAR(view->sight->down.from, -20.80679, kNear);
    EXPECT_NEAR(view->sight->down.to, -4.57392, kNear);
    EXPECT_NEAR(view->sight->down.centre, -12.95276, kNear);

    configure(rig, configOf(4, 90.0F));
    EXPECT_EQ(rig.master, 4U);
    EXPECT_FALSE(viewOf(rig, kSensor, 1, kCrop, Domain::Tg)->sight.has_value())
        << "configured anew";
    for (MRect const& empty : {MRect{9, 9, 0, 9}, MRect{9, 9, 9, -1}}) {
        rig.infos[kSensor].activeArray = empty;
        EXPECT_THAT(*activeArrayOf(rig, kSensor), ElementsAre(0, 0, 2100, 1400)) << "as without";
    }
}

TEST(FieldOfViewTest, WhatIsNotKnownHasNoView) {
    Rig rig = rigWithModes();
    EXPECT_FALSE(viewOf(rig, 4, 1, kCrop, Domain::ActiveArray).has_value()) << "no array";
    EXPECT_FALSE(viewOf(rig, kSensor, 3, kCrop, Domain::Tg).has_value()) << "no matrix";
    EXPECT_FALSE(viewOf(rig, kSensor, 4, kCrop, Domain::Tg).has_value()) << "no way back";
    EXPECT_FALSE(viewOf(rig, kSensor, 9, kCrop, Domain::Tg).has_value()) << "no mode";
    for (float const degrees : {0.0F, 180.0F, std::numeric_limits<float>::quiet_NaN()}) {
        configure(rig, configOf(kSensor, degrees));
        auto const view = viewOf(rig, kSensor, 1, kCrop, Domain::Tg);
        EXPECT_DOUBLE_EQ(view->share, 0.5);
        EXPECT_FALSE(view->sight.has_value()) << degrees;
    }
}

}  // namespace
}  // namespace zoomreplay
