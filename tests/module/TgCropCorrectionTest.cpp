// The correction of TG crops against the output of a sensor mode.
#include "TestPlatform.h"
#include "ZoomOverrideMgr.h"

namespace NSCam::Feature {
namespace {

class TgCropCorrectionTest : public PlatformTest {
 protected:
    ZoomOverrideMgr mMgr;
};

TEST_F(TgCropCorrectionTest, MakesCropsFit) {
    struct Case {
        char const* what;
        std::optional<MSize> minSize;
        MRect crop, expected;
    };
    Case const cases[] = {
        {"fits", {}, {10, 20, 400, 300}, {10, 20, 400, 300}},
        {"as wide as the sensor", {}, {0, 20, 4000, 300}, {0, 20, 4000, 300}},
        {"as high as the sensor", {}, {10, 0, 400, 3000}, {10, 0, 400, 3000}},
        {"fills", {{4000, 3000}}, {0, 0, 4000, 3000}, {0, 0, 4000, 3000}},

        {"too wide: h 4000 / 4.995 = 800.8", {}, {0, 9, 5000, 1001}, {0, 1099, 4000, 801}},
        {"too high: w 3000 * 5/9, x 2333 / 2", {}, {0, 0, 2000, 3600}, {1166, 0, 1667, 3000}},
        {"both, one step", {}, {100, 100, 4400, 3300}, {0, 0, 4000, 3000}},
        {"both, two steps", {}, {0, 0, 4400, 6600}, {1000, 0, 2000, 3000}},
        // h 3110.7, then w 3000 * 9000 / 6999 = 3857.7; the ratio of 4000x3111 would give 3857.3.
        {"one ratio for both steps", {}, {0, 0, 9000, 6999}, {71, 0, 3858, 3000}},
        {"half up: w 3000 * 1.1875 = 3562.5", {}, {0, 0, 7600, 6400}, {218, 0, 3563, 3000}},
        {"half down: w 4 * -1.625 = -6.5", {{4, 4}}, {0, 0, -13, 8}, {2003, 1498, -7, 4}},

        {"too narrow", {{1000, 750}}, {10, 10, 400, 300}, {1500, 1125, 1000, 750}},
        {"too narrow, but high enough", {{1000, 750}}, {9, 9, 800, 800}, {1500, 1000, 1000, 1000}},
        {"too low: w 750 * 10/3", {{1000, 750}}, {0, 0, 2000, 600}, {750, 1125, 2500, 750}},
        // Shrunk to 4000x500, grown to 6000x750: x -1000, then 0, then 4000 - 6000.
        {"grows too wide", {{1000, 750}}, {0, 0, 8000, 1000}, {-2000, 1125, 6000, 750}},
        {"grows too high", {{1000, 4000}}, {0, 0, 1000, 1000}, {0, -1000, 4000, 4000}},

        {"left", {}, {-5, 7, 1000, 750}, {0, 7, 1000, 750}},
        {"top", {}, {5, -7, 1000, 750}, {5, 0, 1000, 750}},
        {"right", {}, {3500, 7, 1000, 750}, {3000, 7, 1000, 750}},
        {"bottom", {}, {5, 2251, 1000, 750}, {5, 2250, 1000, 750}},

        {"no height: h 4000 / inf", {}, {0, 0, 5000, 0}, {0, 1500, 4000, 0}},
        {"no width: h 99 / 0", {{99, 99}}, {5, 5, 0, 300}, {1950, 3000 - kMax, 99, kMax}},
        {"no size: both sides NaN", {{100, 80}}, {5, 5, 0, 0}, {2000, 1460, 0, 80}},

        {"far edge wraps", {}, {kMax, kMax, 1000, 750}, {kMax, kMax, 1000, 750}},
        // w 200 * -2^31 / 100 saturates; 4000 - w wraps to a negative number, so x becomes 0.
        {"centre wraps", {{kMin, 200}}, {0, 0, kMin, 100}, {0, 1400, kMin, 200}},
    };
    setSensor(0, {4000, 3000});
    for (auto const& c : cases) {  // a minimum that is not asked for does not count
        SCOPED_TRACE(c.what);
        MRect crop = c.crop;
        EXPECT_TRUE(mMgr.correctTgCropRegion(0, 2, c.minSize.has_value(),
                                             c.minSize.value_or(MSize{4000, 3000}), crop));
        EXPECT_EQ(crop, c.expected);
        EXPECT_EQ(takeLog().empty(), c.crop == c.expected) << "a change leaves a line";
    }
}

TEST_F(TgCropCorrectionTest, AsksForASizeOnceUntilInitialized) {
    auto const setSensors = [](MSize size) {
        Host::setSensor(0, {{2, {size, {}}}, {3, {size, {}}}});
        Host::setSensor(1, {{2, {size, {}}}});
    };
    auto const correctAll = [this] {
        MRect crop{};
        for (auto const& [sensorId, mode] : {std::pair{0, 2}, {0, 3}, {1, 2}}) {
            crop = {0, 0, 9000, 9000};
            mMgr.correctTgCropRegion(sensorId, mode, false, {}, crop);
        }
        return crop;
    };
    setSensors({100, 100});
    auto const before = Host::sensorSizeQueryCount();

    correctAll();
    EXPECT_EQ(Host::sensorSizeQueryCount() - before, 3U);

    setSensors({200, 200});
    EXPECT_EQ(correctAll(), (MRect{0, 0, 100, 100}));
    EXPECT_EQ(Host::sensorSizeQueryCount() - before, 3U);

    mMgr.initialize(ZoomOverrideMode::None);
    EXPECT_EQ(correctAll(), (MRect{0, 0, 200, 200}));
    EXPECT_EQ(Host::sensorSizeQueryCount() - before, 6U);
}

}  // namespace
}  // namespace NSCam::Feature
