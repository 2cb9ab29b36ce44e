// The sensor table as the platform operations show it: transforms and output sizes.
#include <gtest/gtest.h>

#include "HwTransHelper.h"
#include "ICamsysSensorInfoHelper.h"
#include "host/SensorTable.h"

namespace {

using NSCam::MRect;
using NSCam::MSize;
using NSCam::Host::SensorModeInfo;
using NSCamHW::HwTransHelper;
using NSCamHW::simplifiedMatrix;

void expectMatrix(simplifiedMatrix const& matrix, simplifiedMatrix const& expected) {
    EXPECT_EQ(matrix.xScale, expected.xScale);
    EXPECT_EQ(matrix.xOffset, expected.xOffset);
    EXPECT_EQ(matrix.yScale, expected.yScale);
    EXPECT_EQ(matrix.yOffset, expected.yOffset);
}

class SensorTest : public testing::Test {
 protected:
    ~SensorTest() override { NSCam::Host::clearSensors(); }
};

TEST_F(SensorTest, WindowGivesScaleAndOffset) {
    struct Case {
        char const* mode;
        MSize size;
        MRect window;
        simplifiedMatrix expected;
    };
    Case const cases[] = {
        {"IMX708 fast", {1536, 864}, {768, 432, 3072, 1728}, {0.5F, -384.0F, 0.5F, -216.0F}},
        {"IMX477 fast", {1332, 990}, {696, 528, 2664, 1980}, {0.5F, -348.0F, 0.5F, -264.0F}},
        {"IMX219, rows only", {1920, 1080}, {680, 152, 1920, 2160}, {1.0F, -680.0F, 0.5F, -76.0F}},
        // 1/3 rounds up by a 2^-25th part of itself, to s. 5s is 0.75 units above 0x1.aaaaaap0 and
        // rounds up; 5/3 rounded only once would be 0x1.aaaaaap0.
        {"rounded at each step",
         {1, 1},
         {5, 3, 3, 3},
         {0x1.555556p-2F, -0x1.aaaaacp0F, 0x1.555556p-2F, -1.0F}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.mode);
        expectMatrix(NSCam::Host::matrixOfWindow(c.size, c.window), c.expected);
    }
}

TEST_F(SensorTest, MatrixToActiveIsTheInverse) {
    NSCam::Host::setSensor(2, {{7, SensorModeInfo{{}, {{0.5F, -348.0F, 0.25F, 66.0F}}}}});
    simplifiedMatrix matrix;

    ASSERT_TRUE(HwTransHelper(2).getMatrixFromActive(7, matrix));
    expectMatrix(matrix, {0.5F, -348.0F, 0.25F, 66.0F});
    ASSERT_TRUE(HwTransHelper(2).getMatrixToActive(7, matrix));
    expectMatrix(matrix, {2.0F, 696.0F, 4.0F, -264.0F});
}

TEST_F(SensorTest, MissingTransformFailsAndLeavesTheMatrix) {
    NSCam::Host::setSensor(2, {{0, SensorModeInfo{MSize{1536, 864}, {}}},
                               {1, SensorModeInfo{{}, {{0.0F, 0.0F, 1.0F, 0.0F}}}},
                               {2, SensorModeInfo{{}, {{1.0F, 0.0F, 0.0F, 0.0F}}}}});
    simplifiedMatrix const before{3.0F, 4.0F, 5.0F, 6.0F};
    simplifiedMatrix matrix = before;

    EXPECT_FALSE(HwTransHelper(2).getMatrixFromActive(0, matrix)) << "mode without a matrix";
    EXPECT_FALSE(HwTransHelper(2).getMatrixFromActive(9, matrix)) << "unknown mode";
    EXPECT_FALSE(HwTransHelper(3).getMatrixFromActive(0, matrix)) << "unknown sensor";
    EXPECT_FALSE(HwTransHelper(2).getMatrixToActive(0, matrix)) << "mode without a matrix";
    EXPECT_FALSE(HwTransHelper(2).getMatrixToActive(1, matrix)) << "x scale 0";
    EXPECT_FALSE(HwTransHelper(2).getMatrixToActive(2, matrix)) << "y scale 0";
    expectMatrix(matrix, before);
}

TEST_F(SensorTest, SizeIsAnsweredAndEveryQuestionCounted) {
    NSCam::Host::setSensor(2, {{1, SensorModeInfo{MSize{2304, 1296}, {}}}});
    NSCam::Host::setSensor(2, {{0, SensorModeInfo{MSize{1536, 864}, {}}}, {3, SensorModeInfo{}}});
    auto const helper = NSCam::utility::ICamsysSensorInfoHelper::getInstance();
    auto const askedBefore = NSCam::Host::sensorSizeQueryCount();
    MSize size{-1, -2};

    EXPECT_FALSE(helper->getSensorSize(2, 3, size)) << "mode without a size";
    EXPECT_FALSE(helper->getSensorSize(2, 1, size)) << "mode of the replaced definition";
    EXPECT_FALSE(helper->getSensorSize(0, 0, size)) << "unknown sensor";
    EXPECT_EQ(size, (MSize{-1, -2}));
    EXPECT_TRUE(helper->getSensorSize(2, 0, size));
    EXPECT_EQ(size, (MSize{1536, 864}));
    EXPECT_EQ(NSCam::Host::sensorSizeQueryCount() - askedBefore, 4U);
}

}  // namespace
