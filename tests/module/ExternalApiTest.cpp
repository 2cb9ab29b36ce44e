// External-API mode: which entries of the customer apply, and the P1 and P2 crops made from them.
#include <cstring>
#include <regex>
#include <thread>

#include "MockManager.h"
#include "TestPlatform.h"
#include "ZoomOverrideExternalAPI.h"
#include "ZoomOverrideMgr.h"
#include "host/LiblogCallback.h"

namespace NSCam::Feature {
namespace {

using testing::ElementsAre;
using testing::NiceMock;
using testing::StartsWith;
using Utils::ULog::ULogger;

constexpr auto kExternalApi = ZoomOverrideMode::ExternalAPI;
// The offset makes the effective ratio 0.998 of the wanted one.
constexpr MRect kShiftedArray{8, 0, 4000, 3000};

ZoomOverrideSensorInfoConfig sensors(std::vector<int32_t> const& ids) {
    ZoomOverrideSensorInfoConfig config{ids, {}};
    for (auto const id : ids) {
        config.sensorInfos[static_cast<uint32_t>(id)] =
            std::make_shared<ZoomOverrideSensorInfo>(ZoomOverrideSensorInfo{80, 60, kShiftedArray});
    }
    return config;
}

class ExternalApiTest : public PlatformTest {
 protected:
    ExternalApiTest() {
        EXPECT_TRUE(mStrategy.configSensorInfo(sensors({0, 1})));
        setSensor(0, {1400, 1100}, simplifiedMatrix{0.5F, 0, 0.5F, 0});
        setSensor(1, {4000, 3000}, std::nullopt);
        depositModes(kModeNo, kModeNo);
        EXPECT_TRUE(mMgr->configSensorBehaviorInfo(
            {.portSizes = {{0, {{1, {}}, {3, {}}}}, {1, {{1, {}}}}}}));
    }

    void depositModes(uint32_t mode0, uint32_t mode1) {
        deposit(*mMgr, 5,
                {.sensorModes = {{0, mode0}, {1, mode1}},
                 .streamSizes = {},
                 .constraintStreams = {},
                 .extraTable = {}});
    }

    std::shared_ptr<IZoomOverrideMgr> const mMgr = std::make_shared<ZoomOverrideMgr>();
    ZoomOverrideExternalAPI mStrategy{mMgr, 0};
};

TEST_F(ExternalApiTest, RatiosAreTestedInMirror) {
    struct Case {
        float ratio;
        bool enable;
        float requested;
        bool manual, p1, p2;
    };
    Case const cases[] = {
        {2, true, 4, false, true, false},   {2, true, 2, false, false, true},
        {4, true, 2, false, false, true},   {2, true, 4, true, true, true},
        {2, false, 4, false, false, false}, {2, false, 1, false, false, false},
        {2, false, 4, true, false, false},  {kNan, true, 4, false, false, false},
        {2, true, kNan, true, false, true},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.ratio << c.enable << ' ' << c.requested << c.manual);
        publish(c.ratio, c.enable);
        ZoomOverrideP1Need p1{{true, 8, 9.0F, ZoomOverrideMode::None}, {}};
        EXPECT_EQ(mStrategy.getP1CropSetting({5, c.requested, 0}, p1), c.p1);
        expectHeader(p1, c.enable, c.p1 ? 5 : -1, c.p1 ? c.ratio * 0.998F : c.ratio, kExternalApi);
        EXPECT_EQ(p1.tgCrops.size(), c.p1 ? 2U : 0U);

        ZoomOverrideP2Need p2;
        p2.requestNo = 8;
        EXPECT_EQ(mStrategy.getP2CropSetting({5, c.requested, 0}, p2, c.manual), c.p2);
        expectHeader(p2, c.enable, c.p2 ? 5 : -1, c.p2 ? c.ratio * 0.998F : c.ratio, kExternalApi);
        EXPECT_EQ(p2.streamCrops.size(), c.p2 ? 2U : 0U);
    }
}

TEST_F(ExternalApiTest, WithoutAnEntryTheNeedIsLeftAlone) {
    ZoomOverrideP1Need p1{{true, 8, 9.0F, ZoomOverrideMode::ByRequest}, {}};
    ZoomOverrideP2Need p2;
    p2.requestNo = 8;
    EXPECT_FALSE(mStrategy.getP1CropSetting({5, 4, 0}, p1));
    EXPECT_FALSE(mStrategy.getP2CropSetting({5, 1, 0}, p2, true));
    expectHeader(p1, true, 8, 9.0F, ZoomOverrideMode::ByRequest);
    expectHeader(p2, false, 8, 1.0F, ZoomOverrideMode::None);
}

TEST_F(ExternalApiTest, WithoutAMasterThePresetHeaderStays) {
    mStrategy.configSensorInfo({});
    publish(2, true);
    ZoomOverrideP1Need p1;
    ZoomOverrideP2Need p2;
    EXPECT_FALSE(mStrategy.getP1CropSetting({5, 4, 0}, p1));
    EXPECT_FALSE(mStrategy.getP2CropSetting({5, 1, 0}, p2, false));
    expectHeader(p1, true, -1, 2, kExternalApi);
    expectHeader(p2, true, -1, 2, kExternalApi);
}

TEST_F(ExternalApiTest, P1IsConvertedWhereThereIsAMatrix) {
    publish(2, true);
    ZoomOverrideP1Need need;
    need.tgCrops = {{0, {{0x7009, {}}}}, {7, {{7, {}}}}};
    ASSERT_TRUE(mStrategy.getP1CropSetting({5, 4, 0}, need));
    // (502, 375) 1000x750 reaches beyond 1400x1100.
    MRect const converted{400, 350, 1000, 750};
    MRect const unconverted{1004, 750, 2000, 1500};
    EXPECT_EQ(need.tgCrops,
              (TgCrops{{0, {{0x7001, converted}, {0x7002, converted}, {0x7003, converted}}},
                       {1, {{0x7001, unconverted}, {0x7002, unconverted}}},
                       {7, {{7, {}}}}}));
}

TEST_F(ExternalApiTest, P2IsCorrectedButNotConverted) {
    publish(2, true);
    ZoomOverrideP2Need need;
    need.streamCrops = {{1, {1, 2, 3, 4}}};
    ASSERT_TRUE(mStrategy.getP2CropSetting({5, 2, 0}, need, false));
    // 2000x1500 is too large for 1400x1100: w 1400, h 1050.
    EXPECT_EQ(need.streamCrops, (SensorCrops{{0, {0, 25, 1400, 1050}}, {1, {1, 2, 3, 4}}}));
}

TEST_F(ExternalApiTest, SensorsThatDoNotStreamAreSkipped) {
    publish(2, true);
    for (uint32_t const streaming : {0U, 1U}) {
        depositModes(streaming == 0 ? kModeNo : kSensorNotStreaming,
                     streaming == 1 ? kModeNo : kSensorNotStreaming);
        ZoomOverrideP1Need p1;
        ZoomOverrideP2Need p2;
        EXPECT_TRUE(mStrategy.getP1CropSetting({5, 4, 0}, p1));
        EXPECT_TRUE(mStrategy.getP2CropSetting({5, 2, 0}, p2, false));
        EXPECT_EQ(p1.tgCrops.size(), p1.tgCrops.count(streaming));
        EXPECT_EQ(p2.streamCrops.size(), p2.streamCrops.count(streaming));
        EXPECT_EQ(p1.tgCrops.size() + p2.streamCrops.size(), 2U);
    }
}

TEST_F(ExternalApiTest, SensorUnknownToTheRequestThrows) {
    mStrategy.configSensorInfo(sensors({0, 4}));
    publish(2, true);
    ZoomOverrideP1Need p1;
    ZoomOverrideP2Need p2;
    EXPECT_THROW(mStrategy.getP1CropSetting({5, 4, 0}, p1), std::out_of_range);
    EXPECT_THROW(mStrategy.getP2CropSetting({5, 2, 0}, p2, false), std::out_of_range);
}

// Numbers the crops in the order of their correction, as R1 and R3 look alike otherwise.
TEST_F(ExternalApiTest, BundleFollowsR1OrR3) {
    struct Case {
        char const* what;
        bool hasR1, hasR3;
        std::unordered_map<uint32_t, uint16_t> fspPorts;
        PortCrops expected;
    };
    constexpr uint16_t kR1 = 0x7001;
    constexpr uint16_t kR2 = 0x7002;
    constexpr uint16_t kR3 = 0x7003;
    MRect const a{1, 0, 0, 0};
    MRect const b{2, 0, 0, 0};
    Case const cases[] = {
        {"both", true, true, {}, {{kR1, a}, {kR2, a}, {kR3, b}}},
        {"both, R1", true, true, {{0, kR1}}, {{kR1, a}, {kR2, a}, {kR3, b}}},
        {"both, R3", true, true, {{0, kR3}}, {{kR1, a}, {kR2, b}, {kR3, b}}},
        {"both, R3 elsewhere", true, true, {{1, kR3}}, {{kR1, a}, {kR2, a}, {kR3, b}}},
        {"only R1, R3", true, false, {{0, kR3}}, {{kR1, a}, {kR2, a}}},
        {"only R3, R1", false, true, {{0, kR1}}, {{kR2, a}, {kR3, a}}},
        {"neither", false, false, {{0, kR3}}, {}},
    };
    auto const mgr = std::make_shared<NiceMock<MockManager>>();
    ZoomOverrideExternalAPI strategy(mgr, 0);
    strategy.configSensorInfo(sensors({0}));
    publish(2, true);
    ON_CALL(*mgr, getHistoryCropNeedData).WillByDefault([] {
        return std::make_shared<RunTimeCropNeedData>(
            RunTimeCropNeedData{{{0, kModeNo}}, {}, {}, {}});
    });
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        ON_CALL(*mgr, isPortExist).WillByDefault([&c](int32_t, int32_t port) {
            return port == P1Port::P1_PORT_R1 ? c.hasR1 : c.hasR3;
        });
        ON_CALL(*mgr, correctTgCropRegion)
            .WillByDefault([number = 0](int32_t, int32_t, bool min, MSize, MRect& crop) mutable {
                EXPECT_FALSE(min);
                crop = {++number, 0, 0, 0};
                return true;
            });
        EXPECT_TRUE(strategy.configFspInfo({c.fspPorts}));
        ZoomOverrideP1Need need;
        need.tgCrops[0][P1Port::P1_PORT_R2] = {9, 9, 9, 9};
        takeLog();
        EXPECT_TRUE(strategy.getP1CropSetting({5, 4, 0}, need));
        EXPECT_EQ(need.tgCrops[0], c.expected);
        auto const lines = Host::takeCapturedLog();
        ASSERT_EQ(lines.size(), c.expected.empty() ? 2U : 0U) << "an error line in each sink";
        if (c.expected.empty()) {  // names the place where it begins
            std::smatch place;
            ASSERT_TRUE(std::regex_search(
                lines[0].text, place, std::regex("ExternalAPI[.]cpp:([0-9]+) .*[{]#([0-9]+):")));
            EXPECT_EQ(place[1], place[2]);
        }
    }
}

TEST_F(ExternalApiTest, WithoutARegistryItIsStillMade) {
    Host::enableContainerRegistry(false);
    takeLog();
    ZoomOverrideExternalAPI strategy(mMgr, 0);
    EXPECT_THAT(takeLog(), ElementsAre(StartsWith("create SensorCropMapper("),
                                       "[ExternalAPI::ZoomOverrideExternalAPI] [Zoom Override]: "
                                       "mpCustomZoomReader is null!!"));
    EXPECT_EQ(strategy.getZoomOverrideMode(), kExternalApi);
    EXPECT_TRUE(strategy.onRequestDone(5));
}

// Published between the decision and the crops, at the line that tells the ratio.
TEST_F(ExternalApiTest, DecisionAndCropsAreOfOneEntry) {
    ULogger::sDetailsLevel = 5;
    for (bool const p1 : {true, false}) {
        publish(2.0F, true);
        __android_log_set_logger([](auto const* line, auto... text) {
            if (std::strstr(Host::textOf(line, text...), "ratio 2.00!!") != nullptr) {
                publish(8.0F, true);
            }
        });
        ZoomOverrideP1Need p1Need;
        ZoomOverrideP2Need p2Need;
        EXPECT_TRUE(p1 ? mStrategy.getP1CropSetting({5, 4.0F, 0}, p1Need)
                       : mStrategy.getP2CropSetting({5, 1.0F, 0}, p2Need, false));
        __android_log_set_logger(__android_log_stderr_logger);
        EXPECT_EQ((p1 ? p1Need.zoomRatio : p2Need.zoomRatio), 1.996F);
    }
}

TEST_F(ExternalApiTest, CustomerPublishesWhileRequestsRun) {
    auto const mgr = IZoomOverrideMgr::getInstance();
    mgr->initialize(kExternalApi);
    mgr->configSensorInfo(sensors({1}));
    mgr->configSensorBehaviorInfo({.portSizes = {{1, {{1, {}}}}}});
    publish(1, true);
    std::thread customer([] {
        for (int i = 0; i < 1000; ++i) {
            publish(i % 2 == 0 ? 2.0F : 4.0F, true);
        }
    });

    // Ratio and crop of an answer come from the same entry.
    std::unordered_map<float, MRect> const crops{{0.998F, {0, 0, 4000, 3000}},
                                                 {1.996F, {1004, 750, 2000, 1500}},
                                                 {3.992F, {1504, 1125, 1000, 750}}};
    for (uint32_t no = 1; no <= 1000; ++no) {
        deposit(*mgr, no, {{{1, kModeNo}}, {}, {}, {}});
        ZoomOverrideP1Need need;
        EXPECT_TRUE(mgr->getP1CropSetting({no, 8, 0}, need));
        EXPECT_EQ(need.tgCrops[1][P1Port::P1_PORT_R2], crops.at(need.zoomRatio));
        mgr->onRequestDone(no);
    }
    customer.join();
}

}  // namespace
}  // namespace NSCam::Feature
