// Instant-request mode: what is taken out of metadata, and the P1 crops made from it.
#include "TestPlatform.h"
#include "ZoomOverrideInstantRequest.h"
#include "ZoomOverrideMgr.h"

namespace NSCam::Feature {
namespace {

constexpr auto kInstant = ZoomOverrideMode::InstantRequest;
constexpr int64_t kStill = streamIdOf(0, 2);
constexpr int64_t kInternal = streamIdOf(0, 3);
constexpr int64_t kTele = streamIdOf(1, 1);

// As the customer numbers them. 0 is another name of the preview.
StreamIdMap const kStreamIds{{10, kPreview}, {11, kStill}, {0, kPreview}, {20, kTele}};

class InstantRequestTest : public PlatformTest {
 protected:
    InstantRequestTest() {
        setSensor(0, {4000, 3000});
        setSensor(1, {4000, 3000});
        mHistory.sensorModes = {{0, kModeNo}, {1, kModeNo}};
        mHistory.streamSizes = {{kPreview, {}}, {kStill, {}}, {kTele, {}}};
    }

    bool store(float zoomRatio, std::vector<int32_t> const& crops,
               StreamIdMap const& streamIds = kStreamIds) {
        auto const metadata = makeMetadata(zoomRatio, crops);
        return mStrategy.storeOverrideSetting(&metadata, streamIds);
    }

    /// The P1 crops of a request that asks for more zoom than any test stores.
    TgCrops p1Crops() {
        deposit(*mMgr, 1, mHistory);
        ZoomOverrideP1Need need;
        EXPECT_TRUE(mStrategy.getP1CropSetting({1, 100.0F, 0}, need));
        return need.tgCrops;
    }

    std::shared_ptr<IZoomOverrideMgr> const mMgr = std::make_shared<ZoomOverrideMgr>();
    ZoomOverrideInstantRequest mStrategy{mMgr, 0};
    RunTimeCropNeedData mHistory;
};

TEST_F(InstantRequestTest, TakesCropsByKnownStreams) {
    struct Case {
        char const* what;
        std::vector<int32_t> items;
        PortCrops expected;
    };
    Case const cases[] = {
        {"unknown stream", {99, 1, 2, 30, 40}, {}},
        {"unknown stream first", {99, 1, 2, 30, 40, 11, 5, 6, 70, 80}, {{2, {5, 6, 70, 80}}}},
        {"negative stream behind", {10, 1, 2, 30, 40, -1, 5, 6, 70, 80}, {{1, {1, 2, 30, 40}}}},
        {"same number twice", {10, 1, 2, 30, 40, 10, 5, 6, 70, 80}, {{1, {5, 6, 70, 80}}}},
        {"two numbers of a stream", {0, 1, 2, 30, 40, 10, 5, 6, 70, 80}, {{1, {5, 6, 70, 80}}}},
        {"last group cut off", {10, 1, 2, 30, 40, 11, 5}, {{1, {1, 2, 30, 40}}, {2, {5, 0, 0, 0}}}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_TRUE(store(1.0F, c.items));
        EXPECT_EQ(p1Crops()[0], c.expected);
    }
}

TEST_F(InstantRequestTest, UnusableCropsStillBringTheirRatio) {
    for (auto const& crops : {std::vector<int32_t>{}, {10, 1, 2, 30}, {-1, 1, 2, 30, 40}}) {
        EXPECT_TRUE(store(1.0F, {10, 1, 2, 30, 40}));
        EXPECT_EQ(p1Crops().size(), 1U) << "also after unusable ones";
        EXPECT_FALSE(store(0.75F, crops));

        ZoomOverrideP1Need need;
        EXPECT_FALSE(mStrategy.getP1CropSetting({1, 2.0F, 0}, need));
        expectHeader(need, false, -1, 0.75F, kInstant);
        EXPECT_TRUE(need.tgCrops.empty());
    }
}

TEST_F(InstantRequestTest, OverridesToAWiderViewOnly) {
    struct Case {
        float stored, requested;
        bool overrides;
    };
    Case const cases[] = {
        {1.5F, 2, true}, {2, 2, false}, {2.5F, 2, false}, {kNan, 2, false}, {1.5F, kNan, false}};
    deposit(*mMgr, 1, mHistory);
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.stored << " < " << c.requested);
        store(c.stored, {10, 1, 2, 30, 40});
        ZoomOverrideP1Need need{{false, 8, 9.0F, ZoomOverrideMode::None}, {{5, {{5, {}}}}}};
        EXPECT_EQ(mStrategy.getP1CropSetting({1, c.requested, 0}, need), c.overrides);
        expectHeader(need, true, -1, c.stored, kInstant);
        EXPECT_EQ(need.tgCrops.size(), c.overrides ? 2U : 1U) << "the caller's own entry stays";
    }
    EXPECT_TRUE(mStrategy.onRequestDone(1));
}

TEST_F(InstantRequestTest, ConvertsAndCorrects) {
    struct Case {
        char const* what;
        simplifiedMatrix matrix;
        MSize minSize;
        MRect crop, expected;
    };
    constexpr simplifiedMatrix kHalf{0.5F, 10, 0.5F, 10};
    constexpr simplifiedMatrix kTwice{2, 0, 2, 0};
    constexpr MSize kOutput{4000, 3000};
    // Scale 2, offsets -2000 and -1500; scale 0.5, offsets 50 and 25.
    auto const inner = Host::matrixOfWindow(kOutput, {1000, 750, 2000, 1500});
    auto const outer = Host::matrixOfWindow(kOutput, {-100, -50, 8000, 6000});
    constexpr MSize kNegative{-1000, -1000};  // lets negative sizes through
    Case const cases[] = {
        // 60.5, 35.5, 166.5 and 105.5
        {"truncates", kHalf, {}, {101, 51, 333, 211}, {60, 35, 166, 105}},
        {"toward zero", kHalf, kNegative, {101, 51, -333, 211}, {60, 35, -166, 105}},
        {"unequal scales", {0.5F, 0, 0.25F, 0}, {}, {100, 100, 1000, 1000}, {50, 25, 500, 250}},
        {"window with an origin", inner, {}, {1100, 800, 500, 375}, {200, 100, 1000, 750}},
        {"left of the window", inner, {}, {900, 600, 500, 375}, {0, 0, 1000, 750}},
        {"window beyond the array", outer, {}, {0, 0, 4000, 3000}, {50, 25, 2000, 1500}},
        {"outside the sensor",
         kIdentityMatrix,
         {},
         {5000, 3500, 1000, 750},
         {3000, 2250, 1000, 750}},
        {"wider than the sensor", kTwice, {}, {0, 0, 2500, 500}, {0, 1100, 4000, 800}},
        {"int32 limits", kIdentityMatrix, {}, {kMax, kMin, 1000, 750}, {kMax, 0, 1000, 750}},
        // Saturates at w 2^31 - 1; ratio 2863311, so h 4000 / ratio is 0.
        {"beyond int32", kTwice, {}, {kMax, kMin, kMax, 375}, {0, 1500, 4000, 0}},
        {"no size", kIdentityMatrix, {100, 80}, {10, 10, 0, 0}, {2000, 1460, 0, 80}},
        {"grows to the stream",
         kIdentityMatrix,
         {1000, 750},
         {0, 0, 400, 300},
         {1500, 1125, 1000, 750}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        setSensor(0, kOutput, c.matrix);
        mHistory.streamSizes[kPreview] = c.minSize;
        store(1.0F, {10, c.crop.x, c.crop.y, c.crop.w, c.crop.h});
        EXPECT_EQ(p1Crops()[0], (PortCrops{{1, c.expected}}));
    }
}

TEST_F(InstantRequestTest, MinimumIsTheSizeOfTheConstraintStream) {
    mHistory.constraintStreams = {{kPreview, kTele}};
    mHistory.streamSizes = {{kPreview, {2000, 1500}}, {kTele, {1000, 750}}};
    store(1.0F, {10, 0, 0, 400, 300});
    EXPECT_EQ(p1Crops(), (TgCrops{{0, {{1, {1500, 1125, 1000, 750}}}}}));
}

TEST_F(InstantRequestTest, PortKeyIsZeroWithBit55) {
    int64_t const stream = streamIdOf(0, 0x8001);
    mHistory.streamSizes[stream] = {};
    store(1.0F, {10, 1, 2, 30, 40}, {{10, static_cast<uint64_t>(stream)}});
    EXPECT_EQ(p1Crops(), (TgCrops{{0, {{0, {1, 2, 30, 40}}}}}));
}

TEST_F(InstantRequestTest, SensorThatDoesNotStreamIsSkipped) {
    Host::clearSensors();
    setSensor(0, {4000, 3000});  // no matrix of sensor 1 is asked for
    mHistory.sensorModes[1] = kSensorNotStreaming;
    store(1.0F, {20, 1, 2, 30, 40, 10, 5, 6, 70, 80});
    EXPECT_EQ(p1Crops(), (TgCrops{{0, {{1, {5, 6, 70, 80}}}}}));
}

TEST_F(InstantRequestTest, InternalStreamsFollow) {
    mHistory.streamSizes[kInternal] = {9000, 9000};
    mHistory.constraintStreams = {{kInternal, kPreview}, {kStill, kPreview}};
    mHistory.streamSizes[kPreview] = {100, 80};
    store(1.0F, {10, 0, 0, 50, 40, 11, 500, 600, 700, 800});
    PortCrops const expected{{1, {1950, 1460, 100, 80}},  // corrected
                             {2, {500, 600, 700, 800}},   // has a crop of its own
                             {3, {1950, 1460, 100, 80}}};
    EXPECT_EQ(p1Crops(), (TgCrops{{0, expected}}));

    store(1.0F, {11, 500, 600, 700, 800});
    EXPECT_EQ(p1Crops(), (TgCrops{{0, {{2, {500, 600, 700, 800}}}}})) << "nothing to follow";
}

TEST_F(InstantRequestTest, CropsReplaceThoseOfAReusedNeed) {
    mHistory.streamSizes[kInternal] = {};
    mHistory.constraintStreams = {{kInternal, kPreview}};
    store(1.0F, {10, 1, 2, 300, 400});
    deposit(*mMgr, 5, mHistory);
    ZoomOverrideP1Need need;
    MRect const stale{9, 9, 9, 9};
    need.tgCrops = {{0, {{1, stale}, {3, stale}, {7, stale}}}};
    EXPECT_TRUE(mStrategy.getP1CropSetting({5, 2.0F, 0}, need));
    MRect const crop{1, 2, 300, 400};
    EXPECT_EQ(need.tgCrops, (TgCrops{{0, {{1, crop}, {3, crop}, {7, stale}}}}));
}

TEST_F(InstantRequestTest, InternalStreamsOfMissingCropsGetEmptyOnes) {
    MRect const crop{1, 2, 30, 40};
    mHistory.streamSizes[kInternal] = {};

    mHistory.constraintStreams = {{kInternal, kTele}};
    store(1.0F, {20, crop.x, crop.y, crop.w, crop.h});
    EXPECT_EQ(p1Crops(), (TgCrops{{0, {{1, {}}, {3, {}}}}, {1, {{1, crop}}}})) << "other sensor";

    mHistory.sensorModes[1] = kSensorNotStreaming;
    EXPECT_EQ(p1Crops(), (TgCrops{{0, {{1, {}}, {3, {}}}}})) << "not streaming";
}

TEST_F(InstantRequestTest, UnknownSensorsAndSizesThrow) {
    ZoomOverrideP1Need need;
    store(1.0F, {20, 1, 2, 30, 40});
    mHistory.streamSizes.erase(kTele);
    deposit(*mMgr, 1, mHistory);
    EXPECT_THROW(mStrategy.getP1CropSetting({1, 2.0F, 0}, need), std::out_of_range) << "size";
    mHistory.streamSizes[kTele] = {};
    mHistory.sensorModes.erase(1);
    deposit(*mMgr, 1, mHistory);
    EXPECT_THROW(mStrategy.getP1CropSetting({1, 2.0F, 0}, need), std::out_of_range) << "sensor";
}

}  // namespace
}  // namespace NSCam::Feature
