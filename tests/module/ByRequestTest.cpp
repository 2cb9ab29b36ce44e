// By-request mode: the kept setting and the P1 and P2 answers made from it.
#include "TestPlatform.h"
#include "ZoomOverrideByRequest.h"
#include "ZoomOverrideMgr.h"

namespace NSCam::Feature {
namespace {

using testing::Contains;
using testing::HasSubstr;

constexpr auto kByRequest = ZoomOverrideMode::ByRequest;

/// A pipeline's own strategy: keeps P2 answers for later.
class CachingStrategy : public ZoomOverrideByRequest {
 public:
    using ZoomOverrideByRequest::mP2Cache;
    using ZoomOverrideByRequest::ZoomOverrideByRequest;
};

class ByRequestTest : public PlatformTest {
 protected:
    ByRequestTest() {
        setSensor(0, {4000, 3000}, simplifiedMatrix{0.5F, 10, 0.5F, 20});
        setSensor(1, {4000, 3000}, simplifiedMatrix{0.5F, 10, 0.25F, 20});
        deposit(*mMgr, 15,
                {.sensorModes = {{0, kModeNo}, {1, kModeNo}, {2, kSensorNotStreaming}},
                 .streamSizes = {},
                 .constraintStreams = {},
                 .extraTable = {}});
        keep(true, 20, 2.0F);
    }

    void keep(bool overrideValid, uint32_t requestNo, float zoomRatio) {
        mSetting = std::make_shared<ZoomOverrideSetting>();
        mSetting->overrideValid = overrideValid;
        mSetting->requestNo = requestNo;
        mSetting->zoomRatio = zoomRatio;
        mStrategy.storeOverrideSetting(requestNo, OverrideNotice::Default, mSetting);
    }

    std::shared_ptr<IZoomOverrideMgr> const mMgr = std::make_shared<ZoomOverrideMgr>();
    CachingStrategy mStrategy{mMgr, 0};
    std::shared_ptr<ZoomOverrideSetting> mSetting;
};

TEST_F(ByRequestTest, DecidesP2) {
    struct Case {
        char const* what;
        bool valid;
        uint32_t settingNo;
        float ratio, requested;
        bool manual, overrides;
    };
    Case const cases[] = {
        {"ratio above", true, 20, 2.0F, 1.5F, false, true},
        {"ratio equal", true, 20, 2.0F, 2.0F, false, true},
        {"ratio below", true, 20, 2.0F, 2.5F, false, false},
        {"ratio NaN", true, 20, kNan, 1.5F, false, false},
        {"requested NaN", true, 20, 2.0F, kNan, false, false},
        {"next request", true, 16, 2.0F, 1.5F, false, true},
        {"its own request", true, 15, 2.0F, 1.5F, false, false},
        {"older", true, 14, 2.0F, 1.5F, false, false},
        {"numbers are unsigned", true, 0x80000000, 2.0F, 1.5F, false, true},
        {"invalid", false, 20, 2.0F, 1.5F, false, false},
        {"manual, ratio below", true, 20, 2.0F, 2.5F, true, true},
        {"manual, ratio NaN", true, 20, kNan, 1.5F, true, true},
        {"manual, ratio above", true, 20, 2.0F, 1.5F, true, true},
        {"manual, its own request", true, 15, 2.0F, 1.5F, true, false},
        {"manual, invalid", false, 20, 2.0F, 1.5F, true, false},
    };
    Utils::ULog::ULogger::sDetailsLevel = 5;
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        keep(c.valid, c.settingNo, c.ratio);
        ZoomOverrideP2Need need;
        need.streamCrops[7] = {};
        takeLog();
        EXPECT_EQ(mStrategy.getP2CropSetting({15, c.requested, 0}, need, c.manual), c.overrides);
        expectHeader(need, c.valid, static_cast<int32_t>(c.settingNo), c.ratio, kByRequest);
        EXPECT_EQ(need.streamCrops.size(), 1U);

        bool const off = c.manual && !c.overrides;
        auto const offLine = Contains(HasSubstr("manual mode but the override function off"));
        EXPECT_THAT(takeLog(), offLine.Times(off ? 1 : 0));
    }
}

TEST_F(ByRequestTest, P2HoldsBothDomains) {
    mSetting->overrideRect = {1, 2, 3, 4};
    mSetting->trailingInfo[63] = std::byte{9};
    mSetting->previewAaCrops = {{0, {100.7F, 50.9F, 1000.5F, 750.5F}},
                                {1, {-30.5F, 8.0F, 401.0F, 403.0F}},
                                {2, {1.0F, 2.0F, 30.0F, 40.0F}}};
    mSetting->extraAaCrops = {{0, {7000.0F, 0.0F, 2000.9F, 1000.0F}},
                              {2, {5.0F, 6.0F, 70.0F, 80.0F}},
                              {8, {1.0F, 1.0F, 1.0F, 1.0F}}};
    ZoomOverrideP2Need need;
    need.streamCrops = {{0, {9, 9, 9, 9}}, {7, {7, 7, 7, 7}}};

    ASSERT_TRUE(mStrategy.getP2CropSetting({15, 1.5F, 0}, need, false));

    EXPECT_EQ(need.overrideRect, (MRect{1, 2, 3, 4}));
    EXPECT_EQ(need.trailingInfo, mSetting->trailingInfo);
    EXPECT_EQ(need.previewAaCrops, mSetting->previewAaCrops);
    auto expectedExtra = mSetting->extraAaCrops;
    expectedExtra[1] = {};
    EXPECT_EQ(need.extraAaCrops, expectedExtra);
    // Sensor 0: 60.35, 45.45, 500.25, 375.25. Sensor 1: -5.25 moves to 0, 22, 200.5, 100.75.
    EXPECT_EQ(need.streamCrops,
              (SensorCrops{{0, {60, 45, 500, 375}}, {1, {0, 22, 200, 100}}, {7, {7, 7, 7, 7}}}));
    // Sensor 0: 3510 moves to 4000 - 1000. Sensor 1: an empty crop lands on the offsets.
    EXPECT_EQ(need.extraTgCrops, (SensorCrops{{0, {3000, 20, 1000, 500}}, {1, {10, 20, 0, 0}}}));
}

TEST_F(ByRequestTest, P2CropOfUnknownSensorThrows) {
    mSetting->previewAaCrops[5] = {};
    ZoomOverrideP2Need need;
    EXPECT_THROW(mStrategy.getP2CropSetting({15, 1.5F, 0}, need, false), std::out_of_range);
}

TEST_F(ByRequestTest, CachedP2AnswersOneRefusedQuery) {
    ZoomOverrideP2Need cached;
    cached.requestNo = 11;
    cached.zoomRatio = 4.0F;
    cached.overrideValid = true;
    cached.extraTgCrops[3] = {1, 2, 3, 4};
    mStrategy.mP2Cache[15] = cached;
    ZoomOverrideP2Need need;

    EXPECT_TRUE(mStrategy.getP2CropSetting({15, 1.5F, 0}, need, false));
    expectHeader(need, true, 20, 2.0F, kByRequest);  // the setting overrides: not from the cache

    EXPECT_TRUE(mStrategy.getP2CropSetting({15, 2.5F, 0}, need, false));
    expectHeader(need, true, 11, 4.0F, ZoomOverrideMode::None);
    EXPECT_EQ(need.extraTgCrops, cached.extraTgCrops);

    EXPECT_FALSE(mStrategy.getP2CropSetting({15, 2.5F, 0}, need, false));
    expectHeader(need, true, 20, 2.0F, kByRequest);
}

TEST_F(ByRequestTest, DoneForgetsTheCachedP2OfThatRequest) {
    for (uint32_t const requestNo : {5U, 7U, 8U}) {
        mStrategy.mP2Cache[requestNo] = {};
    }
    EXPECT_TRUE(mStrategy.onRequestDone(7));
    EXPECT_TRUE(mStrategy.onRequestDone(6));
    EXPECT_EQ(mStrategy.mP2Cache.size(), 2U);
    EXPECT_EQ(mStrategy.mP2Cache.count(7), 0U);
}

TEST_F(ByRequestTest, RepeatingRenumbersTheSharedSetting) {
    auto const ignored = std::make_shared<ZoomOverrideSetting>();
    EXPECT_TRUE(mStrategy.storeOverrideSetting(21, OverrideNotice::Repeating, ignored));
    EXPECT_EQ(mSetting->requestNo, 21U);
    EXPECT_EQ(ignored->requestNo, 0U);

    // Only the pipeline numbers a setting that it hands over.
    EXPECT_TRUE(mStrategy.storeOverrideSetting(22, static_cast<OverrideNotice>(2), ignored));
    EXPECT_EQ(ignored->requestNo, 0U);
    EXPECT_EQ(mSetting->requestNo, 21U);
}

TEST_F(ByRequestTest, P1ReportsTheSettingButNeverOverrides) {
    ZoomOverrideP1Need need;
    need.tgCrops[0][1] = {1, 2, 3, 4};
    EXPECT_FALSE(mStrategy.getP1CropSetting({15, 1.5F, 0}, need));
    expectHeader(need, true, 20, 2.0F, kByRequest);
    EXPECT_EQ(need.tgCrops, (TgCrops{{0, {{1, {1, 2, 3, 4}}}}}));
}

TEST_F(ByRequestTest, TransformBetweenModes) {
    // Mode 4 from the active array; mode 5 back to it is (0.5, 1, 0.5, 3). In between: x to
    // 2 * (0.5 x + 1) + 4.
    Host::setSensor(
        3, {{4, {{}, simplifiedMatrix{2, 4, 2, 6}}}, {5, {{}, simplifiedMatrix{2, -2, 2, -6}}}});
    struct Case {
        int32_t target, source;
        bool ok;
        simplifiedMatrix expected;
    };
    Case const cases[] = {
        {4, 5, true, {1, 6, 1, 12}},
        {4, 9, false, {2, 4, 2, 6}},  // as if the source were the active array
        {9, 5, false, {1, 0, 1, 0}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.source << " to " << c.target);
        simplifiedMatrix matrix{7, 7, 7, 7};
        EXPECT_EQ(mStrategy.getTransformMatrix(3, c.target, c.source, matrix), c.ok);
        EXPECT_EQ(matrix.xScale, c.expected.xScale);
        EXPECT_EQ(matrix.xOffset, c.expected.xOffset);
        EXPECT_EQ(matrix.yScale, c.expected.yScale);
        EXPECT_EQ(matrix.yOffset, c.expected.yOffset);
    }
}

}  // namespace
}  // namespace NSCam::Feature
