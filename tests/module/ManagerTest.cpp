// The manager through its interface: lifecycle, gates, P1 answers that are kept, and histories.
#include <unistd.h>

#include <cstdlib>

#include "TestPlatform.h"
#include "ZoomOverrideMgr.h"

namespace NSCam::Feature {
namespace {

using Mode = ZoomOverrideMode;

constexpr auto kUnknownMode = static_cast<Mode>(7);

/// The shared manager, as strategies call back into no other.
class ManagerTest : public PlatformTest {
 protected:
    ManagerTest() {
        setSensor(0, {4000, 3000});
        mMgr->initialize(Mode::None);
    }

    /// Instant-request mode with one crop.
    void store(float zoomRatio, MRect const& crop, int64_t stream = kPreview) {
        auto const metadata = makeMetadata(zoomRatio, {10, crop.x, crop.y, crop.w, crop.h});
        mMgr->storeOverrideSetting(&metadata, {{10, static_cast<uint64_t>(stream)}});
    }

    static RunTimeCropNeedData history() {
        return {.sensorModes = {{0, 2}},
                .streamSizes = {{kPreview, {100, 100}}},
                .constraintStreams = {},
                .extraTable = {{1, 2}}};
    }

    std::shared_ptr<IZoomOverrideMgr> const mMgr = IZoomOverrideMgr::getInstance();
};

TEST_F(ManagerTest, ModeIsThatOfTheStrategy) {
    EXPECT_EQ(ZoomOverrideMgr().getZoomOverrideMode(), Mode::None);
    for (auto const mode : {Mode::InstantRequest, Mode::ByRequest, Mode::ExternalAPI, Mode::None}) {
        EXPECT_TRUE(mMgr->initialize(mode));
        EXPECT_EQ(mMgr->getZoomOverrideMode(), mode);
    }
    EXPECT_TRUE(mMgr->initialize(kUnknownMode));
    EXPECT_EQ(mMgr->getZoomOverrideMode(), Mode::None);
}

TEST_F(ManagerTest, InitializeDropsWhatWasGathered) {
    mMgr->initialize(Mode::InstantRequest);
    mMgr->configSensorBehaviorInfo({.portSizes = {{0, {{1, {}}}}}});
    deposit(*mMgr, 4, history());
    store(1.5F, {0, 0, 400, 300});
    ZoomOverrideP1Need need;
    ASSERT_TRUE(mMgr->getP1CropSetting({4, 2.0F, 0}, need));

    mMgr->initialize(Mode::InstantRequest);

    EXPECT_FALSE(mMgr->isPortExist(0, 1));
    EXPECT_DEATH(mMgr->getHistoryCropNeedData(4), "req\\(4\\) not exist");
    // A fresh strategy answers, which knows neither ratio nor crops.
    deposit(*mMgr, 4, history());
    ZoomOverrideP1Need fresh;
    EXPECT_TRUE(mMgr->getP1CropSetting({4, 2.0F, 0}, fresh));
    expectHeader(fresh, true, -1, 0.0F, Mode::InstantRequest);
    EXPECT_TRUE(fresh.tgCrops.empty());
}

// Each of the calls would end the process if the strategy, or none, were to see it: traps, null
// metadata, nothing that could be repeated.
TEST_F(ManagerTest, CallsOfOtherModesAreDropped) {
    for (auto const mode : {Mode::None, Mode::ByRequest, Mode::InstantRequest, kUnknownMode}) {
        mMgr->initialize(mode);
        EXPECT_TRUE(mMgr->configFspInfo({}));
        EXPECT_TRUE(mMgr->configSensorInfo({}));
    }
    for (auto const mode : {Mode::None, Mode::ExternalAPI, Mode::ByRequest, kUnknownMode}) {
        mMgr->initialize(mode);
        EXPECT_TRUE(mMgr->storeOverrideSetting(nullptr, {}));
    }
    for (auto const mode : {Mode::None, Mode::ExternalAPI, Mode::InstantRequest, kUnknownMode}) {
        mMgr->initialize(mode);
        EXPECT_TRUE(mMgr->storeOverrideSetting(1, OverrideNotice::Repeating, nullptr));
    }
}

TEST_F(ManagerTest, WithoutStrategyQueriesAreRefused) {
    ZoomOverrideP1Need p1;
    ZoomOverrideP2Need p2;
    ZoomOverride3ANeed threeA;
    ZoomOverrideNeedHeader const before{true, 8, 3.0F, Mode::ByRequest};
    static_cast<ZoomOverrideNeedHeader&>(p1) = before;
    static_cast<ZoomOverrideNeedHeader&>(p2) = before;
    static_cast<ZoomOverrideNeedHeader&>(threeA) = before;
    p1.tgCrops[0][1] = {1, 2, 3, 4};

    EXPECT_FALSE(mMgr->getP1CropSetting({4, 2.0F, 0}, p1));
    EXPECT_FALSE(mMgr->getP2CropSetting({4, 2.0F, 0}, p2, true));
    EXPECT_FALSE(mMgr->get3ACropSetting({4, 2.0F, 0}, threeA));
    expectHeader(p1, false, 8, 3.0F, Mode::None);
    expectHeader(p2, false, 8, 3.0F, Mode::None);
    expectHeader(threeA, false, 8, 3.0F, Mode::None);
    EXPECT_EQ(p1.tgCrops.size(), 1U);
}

// Without a strategy an open query would clear the header.
TEST_F(ManagerTest, CloseSwitchesLeaveTheNeedAlone) {
    for (bool const closesP1 : {true, false}) {
        Host::clearProperties();
        Host::setProperty(closesP1 ? kCloseP1Property : kCloseP2Property, -1);
        ZoomOverrideMgr mgr;
        ZoomOverrideP1Need p1;
        ZoomOverrideP2Need p2;
        p1.overrideValid = p2.overrideValid = true;
        EXPECT_FALSE(mgr.getP1CropSetting({4, 2.0F, 0}, p1));
        EXPECT_FALSE(mgr.getP2CropSetting({4, 2.0F, 0}, p2, true));
        EXPECT_EQ(p1.overrideValid, closesP1);
        EXPECT_EQ(p2.overrideValid, !closesP1);
    }
}

TEST_F(ManagerTest, TracesOnlyWhereAPropertyAsksForIt) {
    Utils::ULog::ULogger::sDetailsLevel = 5;
    for (bool const traces : {false, true}) {
        Host::setProperty(kLogLevelProperty, traces ? 1 : 0);
        ZoomOverrideMgr mgr;
        for (auto const mode :
             {Mode::None, Mode::ExternalAPI, Mode::ByRequest, Mode::InstantRequest}) {
            mgr.initialize(mode);
            takeLog();
            EXPECT_TRUE(mgr.onRequestDone(4));                // which nobody has heard of
            size_t const lines = mode == Mode::None ? 1 : 2;  // the manager's and the strategy's
            EXPECT_EQ(takeLog().size(), traces ? lines : 0) << static_cast<int>(mode);
        }
    }
}

TEST_F(ManagerTest, P1AnswerIsKeptByRequestNumberAlone) {
    mMgr->initialize(Mode::InstantRequest);
    deposit(*mMgr, 4, history());
    store(1.5F, {8, 6, 400, 300});
    ZoomOverrideP1Need need;
    ASSERT_TRUE(mMgr->getP1CropSetting({4, 2.0F, 0}, need));
    need.tgCrops.clear();  // the caller's own copy

    store(5.0F, {0, 0, 200, 200});
    ZoomOverrideP1Need again;
    again.tgCrops[7][7] = {};
    EXPECT_TRUE(mMgr->getP1CropSetting({4, 2.0F, 1}, again));
    expectHeader(again, true, -1, 1.5F, Mode::InstantRequest);
    EXPECT_EQ(again.tgCrops, (TgCrops{{0, {{1, {8, 6, 400, 300}}}}}));

    // The next answer is a refusal, and kept as well.
    mMgr->onRequestDone(4);
    EXPECT_FALSE(mMgr->getP1CropSetting({4, 2.0F, 0}, again));
    store(1.5F, {8, 6, 400, 300});
    EXPECT_FALSE(mMgr->getP1CropSetting({4, 2.0F, 0}, again));
    expectHeader(again, true, -1, 5.0F, Mode::InstantRequest);
}

TEST_F(ManagerTest, DoneRequestsLeaveNoTraceInLaterP1Answers) {
    constexpr int64_t kOther = streamIdOf(0, 2);
    auto data = history();
    data.streamSizes[kOther] = {100, 100};
    mMgr->initialize(Mode::InstantRequest);
    deposit(*mMgr, 4, data);
    store(1.5F, {8, 6, 400, 300});
    ZoomOverrideP1Need first;
    first.tgCrops[7][7] = {};
    ASSERT_TRUE(mMgr->getP1CropSetting({4, 2.0F, 0}, first));
    mMgr->onRequestDone(4);

    deposit(*mMgr, 5, data);
    store(1.2F, {80, 60, 800, 600}, kOther);
    ZoomOverrideP1Need answer;
    ASSERT_TRUE(mMgr->getP1CropSetting({5, 2.0F, 0}, answer));

    // One more in flight than before.
    deposit(*mMgr, 6, data);
    store(1.1F, {8, 6, 400, 300});
    ASSERT_TRUE(mMgr->getP1CropSetting({6, 2.0F, 0}, answer));

    ZoomOverrideP1Need again;
    EXPECT_TRUE(mMgr->getP1CropSetting({5, 2.0F, 0}, again));
    expectHeader(again, true, -1, 1.2F, Mode::InstantRequest);
    EXPECT_EQ(again.tgCrops, (TgCrops{{0, {{2, {80, 60, 800, 600}}}}}));
}

TEST_F(ManagerTest, ExceptionLeavesNoP1AnswerAndAUsableManager) {
    mMgr->initialize(Mode::InstantRequest);
    deposit(*mMgr, 4, history());
    store(1.5F, {8, 6, 400, 300}, streamIdOf(9, 1));
    ZoomOverrideP1Need need;
    EXPECT_THAT(
        [&] {
            mMgr->getP1CropSetting({4, 2.0F, 0}, need);
        },
        testing::ThrowsMessage<std::out_of_range>("unordered_map::at: key not found"));

    store(1.5F, {8, 6, 400, 300});
    EXPECT_TRUE(mMgr->getP1CropSetting({4, 2.0F, 0}, need));
}

TEST_F(ManagerTest, RepeatingRequestsShareTheLatestRecord) {
    auto data = history();
    mMgr->setRunTimeCropNeedData(4, OverrideNotice::Default, std::move(data));
    // NOLINTNEXTLINE(bugprone-use-after-move): the record is promised to stay intact
    EXPECT_EQ(data.streamSizes.size() + data.sensorModes.size() + data.extraTable.size(), 3U);
    mMgr->setRunTimeCropNeedData(5, OverrideNotice::Repeating, {});

    auto const record = mMgr->getHistoryCropNeedData(4);
    EXPECT_EQ(record->sensorModes, data.sensorModes);
    EXPECT_EQ(record->extraTable, data.extraTable);
    EXPECT_EQ(mMgr->getHistoryCropNeedData(5), record);

    mMgr->onRequestDone(4);
    EXPECT_EQ(mMgr->getHistoryCropNeedData(5), record);
    mMgr->onRequestDone(5);
    mMgr->setRunTimeCropNeedData(6, OverrideNotice::Repeating, {});
    EXPECT_EQ(mMgr->getHistoryCropNeedData(6), record);

    // Anything but Repeating brings a record of its own.
    mMgr->setRunTimeCropNeedData(6, static_cast<OverrideNotice>(2), {});
    EXPECT_TRUE(mMgr->getHistoryCropNeedData(6)->sensorModes.empty());
}

TEST_F(ManagerTest, PortsAreComparedByTheirLowByte) {
    mMgr->configSensorBehaviorInfo({.portSizes = {{8, {{1, {}}}}}});
    mMgr->configSensorBehaviorInfo({.portSizes = {{0, {{1, {}}}}, {1, {{0, {}}}}}});
    struct Case {
        int32_t sensorId, port;
        bool exists;
    };
    Case const cases[] = {
        {0, 1, true},     {0, P1Port::P1_PORT_R1, true},
        {0, 0x101, true}, {0, -255, true},
        {0, 129, false},  {0, P1Port::P1_PORT_R3, false},
        {0, 256, false},  {1, 256, true},
        {-1, 0, false},   {8, 1, false},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(mMgr->isPortExist(c.sensorId, c.port), c.exists) << c.sensorId << ' ' << c.port;
    }
}

// The deleter is the pipeline's and may call the manager: a setting that dies under the manager's
// lock would hang here, until the alarm.
TEST_F(ManagerTest, SettingsDieAfterTheLockIsReleased) {
    auto const replaceSettings = [] {
        alarm(20);
        ZoomOverrideMgr mgr;
        int dead = 0;
        auto const store = [&](OverrideNotice notice) {
            mgr.storeOverrideSetting(1, notice,
                                     {new ZoomOverrideSetting, [&](ZoomOverrideSetting* setting) {
                                          delete setting;
                                          mgr.getZoomOverrideMode();
                                          ++dead;
                                      }});
        };
        store(OverrideNotice::Default);  // without a strategy
        mgr.initialize(ZoomOverrideMode::ByRequest);
        store(OverrideNotice::Default);
        EXPECT_EQ(dead, 1);
        store(OverrideNotice::Repeating);  // keeps the first one
        EXPECT_EQ(dead, 2);
        store(OverrideNotice::Default);
        EXPECT_EQ(dead, 3);
        mgr.initialize(ZoomOverrideMode::ByRequest);
        EXPECT_EQ(dead, 4);
        std::exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(replaceSettings(), testing::ExitedWithCode(0), "");
}

TEST_F(ManagerTest, PropertiesAreReadOnce) {
    Host::setProperty(kCloseP1Property, 1);
    ZoomOverrideMgr closed;
    Host::clearProperties();
    ZoomOverrideMgr open;
    Host::setProperty(kCloseP1Property, 1);
    Host::setProperty(kCloseP2Property, 1);
    Host::setProperty(kLogLevelProperty, 1);
    Utils::ULog::ULogger::sDetailsLevel = 5;
    for (auto* mgr : {&closed, &open}) {
        mgr->initialize(ZoomOverrideMode::None);
        takeLog();
        ZoomOverrideP1Need p1;
        ZoomOverrideP2Need p2;
        p1.overrideValid = p2.overrideValid = true;
        mgr->getP1CropSetting({}, p1);
        mgr->getP2CropSetting({}, p2, false);
        EXPECT_EQ(p1.overrideValid, mgr == &closed) << "touched unless closed";
        EXPECT_FALSE(p2.overrideValid);
        mgr->onRequestDone(1);
        EXPECT_EQ(takeLog().size(), mgr == &closed ? 1U : 2U) << "no trace lines";
    }
}

}  // namespace
}  // namespace NSCam::Feature
