// The number conversions at the edges of what int32 and float can hold.
#include "Numbers.h"

#include <gtest/gtest.h>

#include "TestPlatform.h"

namespace NSCam::Feature {
namespace {

TEST(NumbersTest, FloatToInt32) {
    struct Case {
        float value;
        int32_t truncated, rounded;
    };
    Case const cases[] = {
        {0.0F, 0, 0},
        {-0.0F, 0, 0},
        {0.49999997F, 0, 0},  // the largest float below a half: adding 0.5 would give 1
        {0.5F, 0, 1},
        {-0.5F, 0, -1},
        {2.5F, 2, 3},
        {-2.5F, -2, -3},
        {-1.75F, -1, -2},
        {8388609.0F, 8388609, 8388609},           // adding 0.5 would round it up
        {2147483520.0F, kMax - 127, kMax - 127},  // the largest float below 2^31
        {2147483648.0F, kMax, kMax},
        {-2147483648.0F, kMin, kMin},
        {-2147483904.0F, kMin, kMin},
        {kInf, kMax, kMax},
        {-kInf, kMin, kMin},
        {kNan, 0, 0},
        {-kNan, 0, 0},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(truncateToInt32(c.value), c.truncated) << c.value;
        EXPECT_EQ(roundToInt32(c.value), c.rounded) << c.value;
    }
}

TEST(NumbersTest, SumsWrap) {
    EXPECT_EQ(wrapAdd(kMax, 1), kMin);
    EXPECT_EQ(wrapAdd(kMin, kMin), 0);
    EXPECT_EQ(wrapSub(kMin, 1), kMax);
    EXPECT_EQ(wrapSub(0, kMin), kMin);
}

}  // namespace
}  // namespace NSCam::Feature
