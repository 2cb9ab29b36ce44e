// The default sensor crop mapper: one zoom ratio to a crop for each sensor, by angles of view.
#include "SensorCropMapper.h"

#include "TestPlatform.h"

namespace NSCam::Feature {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::NanSensitiveFloatEq;

constexpr MRect kArray{0, 0, 4000, 3000};

/// Lets tests raise the log level, as nothing in the module does.
class DebugMapper : public SensorCropMapper {
 public:
    DebugMapper() : SensorCropMapper({}, "test") {}
    using SensorCropMapper::mLogLevel;
};

class SensorCropMapperTest : public PlatformTest {
 protected:
    using Info = ZoomOverrideSensorInfo;

    /// Sensor 0 is the master, sensor 1 the other one.
    void configure(Info const& master, Info const& other) {
        EXPECT_TRUE(mMapper.config(
            {{0, 1}, {{0, std::make_shared<Info>(master)}, {1, std::make_shared<Info>(other)}}}));
    }

    SensorCropOutput map(float zoomRatio) {
        SensorCropOutput out;
        EXPECT_TRUE(mMapper.getSensorCrop({true, zoomRatio}, out));
        EXPECT_TRUE(out.isValid);
        return out;
    }

    DebugMapper mMapper;
};

TEST_F(SensorCropMapperTest, SameAngleGetsTheMastersSize) {
    struct Case {
        char const* what;
        MRect master, other;
        float zoom, effective;
        MRect expected;
    };
    MRect const odd{0, 0, 4001, 3002};
    MRect const offset{8, 6, 4000, 3000};
    MRect const far{2000, 2000, 1001, 801};
    Case const cases[] = {
        {"twice", kArray, kArray, 2, 2, {1000, 750, 2000, 1500}},
        {"odd sizes: 1333.67, 1000.67", odd, odd, 3, 4001.0F / 1333, {1334, 1001, 1333, 1000}},
        {"identity", odd, odd, 1, 1, odd},
        // 3992 / 2000; 8 + (4000 - 2008) / 2, 6 + (3000 - 1506) / 2
        {"offset", offset, offset, 2, 1.996F, {1004, 753, 2000, 1500}},
        // 8 + (4000 - 4008) / 2, 6 + (3000 - 3006) / 2
        {"identity with an offset", offset, offset, 1, 0.998F, {4, 3, 4000, 3000}},
        {"fills the width", kArray, {0, 0, 2000, 2001}, 2, 2, {0, 250, 2000, 1500}},
        {"fills the height", kArray, {0, 0, 3000, 1500}, 2, 2, {500, 0, 2000, 1500}},
        {"too small an array", kArray, {5, 5, 1000, 800}, 2, 2, {5, 5, 1000, 800}},
        {"too low an array", kArray, {0, 0, 4000, 800}, 2, 2, {0, 0, 4000, 800}},
        // 2000 + (1001 - 4000) / 2, 2000 + (801 - 3500) / 2, halves toward zero
        {"too small, but far from 0", kArray, far, 2, 2, {501, 651, 2000, 1500}},
        {"below 1", kArray, {9, 9, 4000, 3000}, 0.5F, 0.5F, {9, 9, 4000, 3000}},
        {"zero", kArray, kArray, 0, kInf, {2000, 1500, 0, 0}},
        {"minus zero", kArray, kArray, -0.0F, kInf, {2000, 1500, 0, 0}},
        {"infinite", kArray, kArray, kInf, kInf, {2000, 1500, 0, 0}},
        {"NaN", kArray, kArray, kNan, kInf, {2000, 1500, 0, 0}},
        {"tiny: saturates", kArray, kArray, 1e-9F, 4000.0F / 2147483648.0F, kArray},
        {"no array", {}, kArray, 2, kNan, {2000, 1500, 0, 0}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        configure({80, 60, c.master}, {80, 50, c.other});  // vertical angles are not compared
        auto const out = map(c.zoom);
        EXPECT_THAT(out.zoomRatio, NanSensitiveFloatEq(c.effective));
        EXPECT_EQ(out.sensorCrops.at(1), c.expected);
        if (c.master == c.other) {
            EXPECT_EQ(out.sensorCrops.at(0), c.expected);
        }
    }
}

TEST_F(SensorCropMapperTest, OtherAnglesAreScaledByTheirTangents) {
    MRect const array{16, 12, 4000, 3000};
    // tan 50 / tan 40 = 1.42028: 4000 / 2.84055 = 1408.2; tan 40 / tan 30 = 1.45336: 1032.1
    MRect const wide{1312, 996, 1408, 1032};
    struct Case {
        char const* what;
        float masterH, degreeH, degreeV, zoom;
        MRect expected;
    };
    Case const cases[] = {
        {"wider", 80, 100, 80, 2, wide},
        // tan 60 / tan 40 = 2.06418: 968.9; tan 45 / tan 30 = 1.73205: 866.03
        {"above 100 degrees", 80, 120, 90, 2, {1532, 1079, 968, 866}},
        // tan 20 / tan 40 = 0.43376: 2305.4; tan 15 / tan 30 = 0.46410: 1616.02
        {"narrower", 80, 40, 30, 4, {863, 704, 2305, 1616}},
        {"narrower: larger than its array", 80, 40, 30, 1, array},
        {"wider at a ratio below 1", 80, 100, 80, 0.5F, array},
        {"0: tangent ratio 0", 80, 0, 60, 2, array},
        {"0 of the master: infinite", 0, 80, 60, 2, {2016, 762, 0, 1500}},
        // A quarter turn in single precision is past the pole: the tangent is -2.3e7.
        {"180", 80, 180, 180, 2, {2016, 1512, 0, 0}},
        {"above 360", 80, 460, 440, 2, wide},             // halves 230 and 220
        {"two turns", 80, 820, 800, 2, wide},             // halves 410 and 400
        {"negative by a turn", 80, -260, -280, 2, wide},  // halves 230 and 220
        {"negative", 80, -100, 80, 2, {2720, 996, -1408, 1032}},
        {"NaN", 80, kNan, 60, 2, {2016, 762, 0, 1500}},
        {"NaN of the master", kNan, 80, 60, 2, {2016, 762, 0, 1500}},
        {"zero ratio", 80, 100, 80, 0, {2016, 1512, 0, 0}},
        {"infinite ratio", 80, 100, 80, kInf, {2016, 1512, 0, 0}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        configure({c.masterH, 60, kArray}, {c.degreeH, c.degreeV, array});
        EXPECT_EQ(map(c.zoom).sensorCrops[1], c.expected);
    }
}

// Other sensors follow the effective ratio 3992 / 1333 = 2.99475, not the wanted one.
TEST_F(SensorCropMapperTest, OtherAnglesFollowTheEffectiveRatio) {
    configure({80, 60, {8, 0, 4000, 3000}}, {100, 80, kArray});
    // 4000 / (1.42028 * 2.99475) = 940.4, 3000 / (1.45336 * 2.99475) = 689.3
    EXPECT_EQ(map(3).sensorCrops[1], (MRect{1530, 1155, 940, 689}));
}

// The infos stay the pipeline's: an angle that changes counts from the next query on.
TEST_F(SensorCropMapperTest, FollowsAnglesThatChange) {
    auto const master = std::make_shared<Info>(Info{80, 60, kArray});
    auto const other = std::make_shared<Info>(Info{100, 80, kArray});
    EXPECT_TRUE(mMapper.config({{0, 1}, {{0, master}, {1, other}}}));
    EXPECT_EQ(map(2).sensorCrops[1], (MRect{1296, 984, 1408, 1032}));
    EXPECT_EQ(map(2).sensorCrops[1], (MRect{1296, 984, 1408, 1032}));
    other->degreeV = 90;  // tan 45 / tan 30 = 1.73205: 866.03
    EXPECT_EQ(map(2).sensorCrops[1], (MRect{1296, 1067, 1408, 866}));
    *master = {40, 30, kArray};  // tan 50 / tan 20 = 3.27432: 610.8; tan 45 / tan 15: 401.9
    EXPECT_EQ(map(2).sensorCrops[1], (MRect{1695, 1299, 610, 401}));
    EXPECT_TRUE(mMapper.config({{0}, {{0, master}, {1, std::make_shared<Info>(*master)}}}));
    EXPECT_EQ(map(2).sensorCrops[1], (MRect{1000, 750, 2000, 1500}));
}

TEST_F(SensorCropMapperTest, KeepsCropsThatAreThere) {
    configure({80, 60, kArray}, {80, 60, kArray});
    SensorCropOutput out;
    out.sensorCrops = {{1, {1, 2, 3, 4}}, {9, {9, 9, 9, 9}}};
    EXPECT_TRUE(mMapper.getSensorCrop({false, 2.0F}, out));
    EXPECT_FALSE(out.isValid) << "the customer's switch";
    EXPECT_EQ(out.sensorCrops,
              (SensorCrops{{0, {1000, 750, 2000, 1500}}, {1, {1, 2, 3, 4}}, {9, {9, 9, 9, 9}}}));
}

TEST_F(SensorCropMapperTest, MissingMasterIsRefused) {
    auto const refused = [this] {
        SensorCropOutput out{true, 3.0F, {{7, {}}}};
        EXPECT_FALSE(mMapper.getSensorCrop({true, 2.0F}, out));
        EXPECT_FALSE(out.isValid);
        EXPECT_EQ(out.zoomRatio, 3.0F);
        EXPECT_EQ(out.sensorCrops.size(), 1U);
        return takeLog();
    };
    EXPECT_THAT(refused(), ElementsAre("[::getSensorCrop] cannot find in mvInfo. sensorId(-1)"));
    configure({80, 60, kArray}, {80, 60, kArray});
    mMapper.config({{5, 0}, {{0, std::make_shared<Info>()}}});
    EXPECT_THAT(refused(), ElementsAre("[::getSensorCrop] cannot find in mvInfo. sensorId(5)"));
    mMapper.config({{0}, {}});  // nothing is left of the sensors before
    EXPECT_THAT(refused(), ElementsAre("[::getSensorCrop] cannot find in mvInfo. sensorId(0)"));
}

TEST_F(SensorCropMapperTest, DebugRatioNeedsLogLevel3) {
    configure({80, 60, kArray}, {80, 60, kArray});
    Utils::ULog::ULogger::sDetailsLevel = 5;
    mMapper.mLogLevel = 3;
    EXPECT_EQ(map(4).zoomRatio, 4.0F) << "the property is not set";
    Host::setProperty(kMapperZoomRatioProperty, 25);
    EXPECT_EQ(map(4).zoomRatio, 2.5F);
    EXPECT_THAT(takeLog(), Contains(HasSubstr("debug(1), Zoom ratio(2.500000)")));
    mMapper.mLogLevel = 2;
    EXPECT_EQ(map(4).zoomRatio, 4.0F);
}

TEST_F(SensorCropMapperTest, LogsRatiosAndCrops) {
    configure({80, 60, {0, 0, 4001, 3001}}, {100, 80, {16, 12, 4000, 3000}});
    Utils::ULog::ULogger::sDetailsLevel = 5;
    map(2);
    auto const log = takeLog();
    // The room of 2001 and 1501 is halved toward zero; 4001 / 2000.
    EXPECT_THAT(log, Contains(HasSubstr("debug(0), Zoom ratio(2.000500), "
                                        "appCropRegion(1000, 750), 2000x1500")));
    // 4000 / (1.42028 * 2.0005) = 1407.8, 3000 / (1.45336 * 2.0005) = 1031.8
    EXPECT_THAT(log, Contains("[::getSensorCrop] cam(1) activeCrop=(1312/996/1407x1031) "
                              "degreeRatio_H=1.420277 degreeRatio_V=1.453363"));
}

TEST_F(SensorCropMapperTest, AnglesBecomeRadiansOfOneTurn) {
    EXPECT_EQ(DebugMapper::degreeToRadians(0), 0);
    EXPECT_FLOAT_EQ(DebugMapper::degreeToRadians(0.5F), 0.00872665F);
    EXPECT_FLOAT_EQ(DebugMapper::degreeToRadians(450), 1.5707964F);
    EXPECT_FLOAT_EQ(DebugMapper::degreeToRadians(-90), 4.712389F);
}

TEST_F(SensorCropMapperTest, SensorWithoutOpticsGetsNoCrop) {
    mMapper.config(
        {{0, 1}, {{0, std::make_shared<Info>(Info{60.0F, 45.0F, kArray})}, {1, nullptr}}});
    EXPECT_EQ(map(2.0F).sensorCrops, (SensorCrops{{0, {1000, 750, 2000, 1500}}}));
}

}  // namespace
}  // namespace NSCam::Feature
