// Log lines: which switches let a line of each level through, what the sinks receive, and the lines
// that whole requests leave.
#include "LogLines.h"

#include <cstdlib>
#include <locale>
#include <regex>

#include "TestPlatform.h"
#include "ZoomOverrideByRequest.h"
#include "ZoomOverrideExternalAPI.h"
#include "ZoomOverrideInstantRequest.h"
#include "ZoomOverrideMgr.h"

namespace NSCam::Feature {
namespace {

using Host::LogSink;
using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;
using Utils::ULog::ULogger;

/// Logs a line of each level, and shows whether its argument was evaluated.
class Speaker {
 public:
    void debug() { ZLOG_DEBUG("value %d", ++mEvaluated); }
    void trace() { ZLOG_TRACE("value %d", ++mEvaluated); }
    void info() { ZLOG_INFO_PLAIN("value %d", ++mEvaluated); }
    void warning() { ZLOG_WARNING("value %d", ++mEvaluated); }
    void error() { ZLOG_ERROR("value %d", ++mEvaluated); }
    void warn(std::string const& text) { ZLOG_WARNING("%s", text.c_str()); }
    [[noreturn]] void abort() { ZLOG_ABORT("the end"); }

    int mLogLevel = 1;
    int mEvaluated = 0;

 private:
    std::string mName = "Speaker";
};

struct Kind {
    char const* function;
    void (Speaker::*say)();
    int32_t detailsLevel;
    bool heedsMask;
    uint32_t printLevel;
    int32_t unifiedLevel;
    char const* prefix;
    char const* text;
};

constexpr Kind kKinds[] = {
    {"debug", &Speaker::debug, 5, true, 0, 5, "[D]", "[Speaker::debug] value 1"},
    {"trace", &Speaker::trace, 5, true, 0, 5, "[D]", "[Speaker::trace] value 1"},
    {"info", &Speaker::info, 3, false, 3, 3, "[I]", "value 1"},
    {"warning", &Speaker::warning, 2, false, 2, 2, "[W]", "[Speaker::warning] value 1"},
    {"error", &Speaker::error, 1, false, 1, 1, "[E]", "[Speaker::error] value 1"},
};

/// Makes the process part all digits of the numbers that it formats: log lines ignore its locale.
class PartedDigits : public std::numpunct<char> {
 public:
    PartedDigits() : std::numpunct<char>(1) {
        std::locale::global(std::locale(std::locale::classic(), this));
    }
    ~PartedDigits() override { std::locale::global(std::locale::classic()); }

 private:
    std::string do_grouping() const override { return "\1"; }
};

class LogLinesTest : public PlatformTest {
 protected:
    LogLinesTest() { ULogger::sDetailsLevel = 5; }

    /// The sinks that one line reaches. Its argument is evaluated once if there is any.
    static std::vector<LogSink> sinksOf(Kind const& kind) {
        Speaker speaker;
        (speaker.*kind.say)();
        std::vector<LogSink> sinks;
        for (auto const& line : Host::takeCapturedLog()) {
            sinks.push_back(line.sink);
        }
        EXPECT_EQ(speaker.mEvaluated, sinks.empty() ? 0 : 1);
        return sinks;
    }

    /// The unified texts, one a line, with * for what differs from run to run.
    static std::string joinedLog() {
        std::string text = "\n";
        for (auto const& line : takeLog()) {
            text += line + '\n';
        }
        std::regex const varying("(CropNeedDataPtr:|Mapper\\(|\\{#)(0x)?[0-9a-f]+");
        return std::regex_replace(text, varying, "$1*");
    }
};

std::vector<LogSink> const kNone;
std::vector<LogSink> const kPrint{LogSink::Print};
std::vector<LogSink> const kUnified{LogSink::Unified};
std::vector<LogSink> const kBoth{LogSink::Print, LogSink::Unified};

TEST_F(LogLinesTest, BothSinksReceiveTheLine) {
    for (auto const& kind : kKinds) {
        SCOPED_TRACE(kind.function);
        Speaker speaker;
        (speaker.*kind.say)();
        auto const lines = Host::takeCapturedLog();
        ASSERT_EQ(lines.size(), 2U);
        EXPECT_EQ(lines[0].sink, LogSink::Print);
        EXPECT_EQ(lines[0].level, static_cast<int32_t>(kind.printLevel));
        EXPECT_THAT(lines[0].text,
                    AllOf(StartsWith(std::string(kind.prefix) + "[qvxcam-ZoomOverrideMgr] tests/"
                                                                "module/LogLinesTest.cpp:"),
                          ContainsRegex("cpp:[0-9]+ "),
                          EndsWith(std::string(" ") + kind.function + "() " + kind.text)));
        EXPECT_EQ(lines[1], (Host::LogLine{LogSink::Unified, kind.unifiedLevel, kind.text}));
    }
}

TEST_F(LogLinesTest, SwitchesGateEachLevel) {
    for (auto const& kind : kKinds) {
        SCOPED_TRACE(kind.function);
        ULogger::sDetailsLevel = kind.detailsLevel - 1;
        EXPECT_EQ(sinksOf(kind), kNone);
        ULogger::sDetailsLevel = kind.detailsLevel;
        EXPECT_EQ(sinksOf(kind), kBoth);

        ULogger::sNormalDetailsMask = 0x1001000;
        EXPECT_EQ(sinksOf(kind), kBoth);
        for (auto const mask : {0x1000U, 0x1000000U, 0xFEFFEFFFU}) {
            ULogger::sNormalDetailsMask = mask;
            EXPECT_EQ(sinksOf(kind), kind.heedsMask ? kNone : kBoth) << mask;
        }

        Host::resetLogSwitches();
        ULogger::sDetailsLevel = 5;
        Host::setPrintLevel(kind.printLevel, false);
        EXPECT_EQ(sinksOf(kind), kUnified);

        Host::setPrintLevel(kind.printLevel, true);
        struct Case {
            uint32_t mode;
            std::vector<LogSink> const& sinks;
        };
        for (auto const& c : {Case{0, kNone},
                              {1, kPrint},
                              {2, kUnified},
                              {8, kUnified},
                              {4, kNone},
                              {0xFFFFFFF4, kNone},
                              {3, kBoth},
                              {9, kBoth}}) {
            ULogger::sMode = c.mode;
            EXPECT_EQ(sinksOf(kind), c.sinks) << c.mode;
        }
        Host::resetLogSwitches();
    }
}

TEST_F(LogLinesTest, TraceNeedsTheLogLevel) {
    Speaker speaker;
    speaker.mLogLevel = 0;
    speaker.trace();
    EXPECT_THAT(takeLog(), testing::IsEmpty());
    EXPECT_EQ(speaker.mEvaluated, 0);
    speaker.mLogLevel = -1;
    speaker.trace();
    EXPECT_THAT(takeLog(), ElementsAre("[Speaker::trace] value 1"));
}

TEST_F(LogLinesTest, LongLinesAreCutForTheUnifiedLogger) {
    Speaker().warn(std::string(2000, 'x'));
    auto const lines = Host::takeCapturedLog();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines[0].text, testing::EndsWith("[Speaker::warn] " + std::string(2000, 'x')));
    EXPECT_EQ(lines[1].text, "[Speaker::warn] " + std::string(1023 - 16, 'x'));
}

/// Shows what the unified logger receives beside the text.
class OpenLogger : public ULogger {
 public:
    void print(uint32_t category, char const* tag, int32_t level, char const* text,
               size_t length) override {
        std::fprintf(stderr, "%#x %s %d %s %zu", category, tag, level, text, length);
    }
    void flush(int32_t reason) override { std::fprintf(stderr, ", flushed with %d\n", reason); }
};

TEST_F(LogLinesTest, AbortPrintsAndFlushes) {
    EXPECT_DEATH(
        {
            ULogger::sULogger = new OpenLogger;
            Speaker().abort();
        },
        "0x100100c qvxcam-ZoomOverrideMgr 1 .Speaker::abort. the end 24, flushed with 1\n");
}

TEST_F(LogLinesTest, CorrectionOfATgCrop) {
    setSensor(0, {4000, 3000});
    ZoomOverrideMgr mgr;
    MRect crop{0, 0, 8000, 1000};
    takeLog();
    mgr.correctTgCropRegion(0, 2, true, {1000, 750}, crop);
    ULogger::sDetailsLevel = 2;  // leaves the warnings
    crop = {0, -8, 100, 100};
    mgr.correctTgCropRegion(0, 2, false, {}, crop);
    crop = {0, 2999, 100, 100};
    mgr.correctTgCropRegion(0, 2, false, {}, crop);
    EXPECT_EQ(joinedLog(), R"(
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 originalTgCrop:(0,0)(8000x1000)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2  crop > maxSize crop: 8000x1000 maxSize:4000x3000
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 max size correctedTgCrop:(0,1250)(4000x500)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 : crop < minSize crop 4000x500 minSize:1000x750
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 min size correctedTgCrop:(-1000,1125)(6000x750)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 : point x < 0 fix to left
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 : width out of bound fix to right
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 correctedTgCrop:(-2000,1125)(6000x750)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 : point y < 0 fix to top
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 : height out of bound fix to bottom
)");
}

// In a process of its own, whose manager reads the log level.
TEST_F(LogLinesTest, InstantRequest) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const request = [] {
        Host::setProperty(kLogLevelProperty, 2);
        setSensor(0, {4000, 3000}, simplifiedMatrix{0.5F, 10, 0.5F, 10});
        auto const preview = streamIdOf(0, 1);
        auto const internal = streamIdOf(0, 2);
        auto const mgr = IZoomOverrideMgr::getInstance();
        mgr->initialize(ZoomOverrideMode::InstantRequest);
        deposit(*mgr, 4,
                {{{0, 2}}, {{internal, {}}}, {{internal, preview}, {preview, internal}}, {}});
        mgr->setRunTimeCropNeedData(5, OverrideNotice::Repeating, {});
        auto const metadata = makeMetadata(1.5F, {10, 101, 51, 333, 211});
        PartedDigits const locale;
        mgr->storeOverrideSetting(&metadata, {{10, static_cast<uint64_t>(preview)}});
        ZoomOverrideP1Need need;
        mgr->getP1CropSetting({5, 2.0F, 0}, need);
        mgr->getP1CropSetting({5, 2.0F, 0}, need);
        mgr->onRequestDone(5);
        mgr->initialize(ZoomOverrideMode::None);
        ZoomOverrideP2Need p2;
        ZoomOverride3ANeed threeA;
        mgr->getP2CropSetting({4, 2.5F, 0}, p2, false);
        mgr->get3ACropSetting({4, 2.5F, 0}, threeA);
        EXPECT_EQ(joinedLog(), R"(
[ZoomOverrideMgr::ZoomOverrideMgr] [Zoom Override]: create instance +
[ZoomOverrideMgr::ZoomOverrideMgr] [Zoom Override]: create instance - logLevel:2
[InstantRequest::ZoomOverrideInstantRequest] [Zoom Override] InstantRequest
[ZoomOverrideMgr::initialize] [Zoom Override] ZoomOverride Mode: 3 
[ZoomOverrideMgr::setRunTimeCropNeedData] [Zoom Override] req 4, Notice:default
[ZoomOverrideMgr::setRunTimeCropNeedData] [Zoom Override] req 5, Notice:repeating
[ZoomOverrideMgr::setRunTimeCropNeedData] [Zoom Override][Repeating] req 5, keep last data
[InstantRequest::storeOverrideSetting] LatestZoomRatio: 1.500000
[InstantRequest::storeOverrideSetting] cusStreamId: 10  streamId: 0x10000000000 rect(101, 51, 333, 211)
[ZoomOverrideMgr::getP1CropSetting] meta req 5, ratio 2.00 sensorId:0!!
[InstantRequest::getP1CropSetting] canOverrideP1 1!
[ZoomOverrideMgr::getHistoryCropNeedData] reqNo:5 CropNeedDataPtr:*
[InstantRequest::getP1CropSetting] activecrop :101,51,333,211
[InstantRequest::getP1CropSetting] before refine:60,35,166,105
[InstantRequest::getP1CropSetting] streamId{0x10000000000}<->constraintStreamId{0x20000000000}
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 originalTgCrop:(60,35)(166x105)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 min size correctedTgCrop:(60,35)(166x105)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 correctedTgCrop:(60,35)(166x105)
[InstantRequest::getP1CropSetting] custom crop(activeDomain): streamId(0x10000000000) {[101,51,(333,211)]}
[InstantRequest::getP1CropSetting] custom crop(tgResult): streamId(0x10000000000) {[60,35,(166,105)]}
[InstantRequest::getP1CropSetting] check streamId {0x20000000000}
[InstantRequest::getP1CropSetting] internal stream must also override avoiding hit p1 limitation, sensorId:0,{0x20000000000} <- {0x10000000000}
[InstantRequest::getP1CropSetting] overrideInfo: [0][0x1]{60 35 166 105}[0x2]{60 35 166 105}
[ZoomOverrideMgr::getP1CropSetting] meta req 5, ratio 2.00 sensorId:0!!
[ZoomOverrideMgr::getP1CropSetting] requestNo:5 sensorId:0 use zoom override cached
[ZoomOverrideMgr::onRequestDone] req 5 request Done, remove runtime crop data(2), p1 cached(1)
[InstantRequest::onRequestDone] req 5 request Done, but nothing need remove in this special module
[ZoomOverrideMgr::initialize] [Zoom Override] ZoomOverride Mode: 0 
[ZoomOverrideMgr::getP2CropSetting] meta req 4, ratio 2.50!!
[ZoomOverrideMgr::get3ACropSetting] meta req 4, ratio 2.50!!
)");
        std::exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(request(), testing::ExitedWithCode(0), "");
}

TEST_F(LogLinesTest, ByRequest) {
    setSensor(0, {4000, 3000});
    auto const mgr = std::make_shared<ZoomOverrideMgr>();
    deposit(*mgr, 15, {{{0, 2}}, {}, {}, {}});
    auto const setting = std::make_shared<ZoomOverrideSetting>();
    setting->overrideValid = true;
    setting->zoomRatio = 2.0F;
    setting->previewAaCrops[0] = {10.5F, 20.0F, 300.25F, 400.0F};
    takeLog();

    PartedDigits const locale;
    ZoomOverrideByRequest strategy(mgr, 1);
    strategy.storeOverrideSetting(20, OverrideNotice::Default, setting);
    strategy.storeOverrideSetting(21, OverrideNotice::Repeating, nullptr);
    ZoomOverrideP1Need p1;
    ZoomOverrideP2Need p2;
    strategy.getP1CropSetting({15, 1.5F, 0}, p1);
    strategy.getP2CropSetting({15, 1.5F, 0}, p2, false);
    strategy.getP2CropSetting({30, 1.5F, 0}, p2, true);
    strategy.onRequestDone(15);
    simplifiedMatrix matrix;
    strategy.getTransformMatrix(0, 2, 2, matrix);
    EXPECT_EQ(joinedLog(), R"(
[ByRequest::ZoomOverrideByRequest] [Zoom Override] ByRequest
[ByRequest::storeOverrideSetting] [Repeating] update override setting no(20)
[ByRequest::storeOverrideSetting] [Repeating]only update setting request no(21)
[ByRequest::getP1CropSetting] latest req 21, ratio 2.00!!
[ByRequest::getP1CropSetting] canOverrideP1 0!
[ByRequest::getP2CropSetting] canP2Override 1! manual:0
[ZoomOverrideMgr::getHistoryCropNeedData] reqNo:15 CropNeedDataPtr:*
[ByRequest::getP2CropSetting] inputRequest:15 outputRequest:21
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 originalTgCrop:(10,20)(300x400)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 correctedTgCrop:(10,20)(300x400)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 originalTgCrop:(0,0)(0x0)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 correctedTgCrop:(0,0)(0x0)
[ByRequest::getP2CropSetting] overrideInfo: [OverrideAA]15<-21PreviewAA:[0]{10.5 20 300.25 400}PreviewTg:[0]{10 20 300 400}
[ByRequest::getP2CropSetting] manual mode but the override function off
[ByRequest::getP2CropSetting] canP2Override 0! manual:1
[ByRequest::onRequestDone] req 15 request Done, remove p2 cached
[ByRequest::getTransformMatrix] [Zoom Override] sensor mode not match, prepare recalculating
)");
}

TEST_F(LogLinesTest, ExternalApi) {
    setSensor(0, {4000, 3000}, std::nullopt);
    auto const mgr = std::make_shared<ZoomOverrideMgr>();
    deposit(*mgr, 5, {{{0, 2}}, {}, {}, {}});
    takeLog();

    ZoomOverrideExternalAPI strategy(mgr, 1);
    ZoomOverrideSensorInfo const info{80, 60, {0, 0, 4000, 3000}};
    strategy.configSensorInfo({{0}, {{0, std::make_shared<ZoomOverrideSensorInfo>(info)}}});
    ZoomOverrideP1Need p1;
    ZoomOverrideP2Need p2;
    strategy.getP1CropSetting({5, 4.0F, 0}, p1);
    strategy.getP2CropSetting({5, 4.0F, 0}, p2, true);
    publish(2.0F, true);
    strategy.getP1CropSetting({5, 4.0F, 0}, p1);
    strategy.getP2CropSetting({5, 4.0F, 0}, p2, true);
    publish(2.0F, false);
    strategy.getP2CropSetting({5, 4.0F, 0}, p2, true);
    strategy.onRequestDone(5);
    EXPECT_EQ(joinedLog(), R"(
[::SensorCropMapper] SCM: create instance +
[::SensorCropMapper] SCM: create instance -
create SensorCropMapper(*) successfully
[ExternalAPI::getP1CropSetting] [Zoom Override] reader return no zoom override data!!
[ExternalAPI::getP2CropSetting] [ZoomOverride] reader return no zoom override data!!
[ExternalAPI::getP1CropSetting] ratio 2.00!!
[::getSensorCrop] debug(0), Zoom ratio(2.000000), appCropRegion(1000, 750), 2000x1500
[::getSensorCrop] cam(0) activeCrop=(1000/750/2000x1500)
[ZoomOverrideMgr::getHistoryCropNeedData] reqNo:5 CropNeedDataPtr:*
[ExternalAPI::convertToTgDomain] get matrix failed
[ExternalAPI::updateSensorP1Crop] unknown bundle R1/R3 crop, skip multicam crop setting. (updateSensorP1Crop){#*:feature/common/zoomoverride/ZoomOverrideExternalAPI.cpp}
[ExternalAPI::getP2CropSetting] ratio 2.00!!
[ExternalAPI::getP2CropSetting] canP2Override 1! manual:1
[::getSensorCrop] debug(0), Zoom ratio(2.000000), appCropRegion(1000, 750), 2000x1500
[::getSensorCrop] cam(0) activeCrop=(1000/750/2000x1500)
[ZoomOverrideMgr::getHistoryCropNeedData] reqNo:5 CropNeedDataPtr:*
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 originalTgCrop:(1000,750)(2000x1500)
[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:2 correctedTgCrop:(1000,750)(2000x1500)
[ExternalAPI::getP2CropSetting] ratio 2.00!!
[ExternalAPI::getP2CropSetting] manual mode but the override function off
[ExternalAPI::onRequestDone] req 5 request Done, but nothing need remove in this special module
)");
}

// How many lines a request leaves: which level each line has, and which of them are trace lines.
TEST_F(LogLinesTest, RequestsLeaveTheirLinesAtEachLevel) {
    auto const infos = [](MRect const& array) {
        auto const info = std::make_shared<ZoomOverrideSensorInfo>();
        *info = {80, 60, array};
        return ZoomOverrideSensorInfoConfig{{0}, {{0, info}}};
    };
    setSensor(0, {400, 300}, std::nullopt);
    setSensor(1, {4000, 3000});
    auto const mgr = std::make_shared<ZoomOverrideMgr>();
    auto const preview = streamIdOf(1, 1);
    auto const internal = streamIdOf(1, 2);
    deposit(*mgr, 5,
            {{{0, 2}, {1, 2}}, {{preview, {}}, {internal, {}}}, {{internal, preview}}, {}});

    auto const instant = [&](int32_t logLevel) {
        ZoomOverrideInstantRequest strategy(mgr, logLevel);
        auto const metadata = makeMetadata(1.5F, {10, 1, 2, 30, 40});
        strategy.storeOverrideSetting(&metadata, {{10, static_cast<uint64_t>(preview)}});
        ZoomOverrideP1Need need;
        strategy.getP1CropSetting({5, 2.0F, 1}, need);
        strategy.onRequestDone(5);
    };
    auto const byRequest = [&](int32_t logLevel) {
        ZoomOverrideByRequest strategy(mgr, logLevel);
        auto const setting = std::make_shared<ZoomOverrideSetting>();
        setting->overrideValid = true;
        setting->previewAaCrops[1] = {1, 2, 30, 40};
        strategy.storeOverrideSetting(1, OverrideNotice::Default, setting);
        strategy.storeOverrideSetting(9, OverrideNotice::Repeating, nullptr);
        ZoomOverrideP1Need p1;
        ZoomOverrideP2Need p2;
        strategy.getP1CropSetting({5, 2.0F, 1}, p1);
        strategy.getP2CropSetting({9, 2.0F, 1}, p2, true);
        strategy.getP2CropSetting({5, 2.0F, 1}, p2, true);
        strategy.onRequestDone(5);
    };
    // No matrix, no port, and a crop of 2000x1500 in a mode of 400x300.
    auto const external = [&](int32_t logLevel) {
        ZoomOverrideExternalAPI strategy(mgr, logLevel);
        strategy.configSensorInfo(infos({0, 0, 4000, 3000}));
        publish(2.0F, true);
        ZoomOverrideP1Need p1;
        ZoomOverrideP2Need p2;
        strategy.getP1CropSetting({5, 4.0F, 0}, p1);
        strategy.getP2CropSetting({5, 1.0F, 0}, p2, false);
        strategy.onRequestDone(5);
    };

    struct Case {
        int32_t detailsLevel, logLevel;
        size_t instant, byRequest, external;
    };
    Case const cases[] = {
        // Error: no port. Warnings: no matrix, which only a log level shows, and a crop too large.
        // Info: which mapper was made.
        {0, 2, 0, 0, 0},
        {1, 2, 0, 0, 1},
        {2, 0, 0, 0, 2},
        {2, 1, 0, 0, 3},
        {3, 1, 0, 0, 4},
        {4, 2, 0, 0, 4},
        // Debug, instant: made, ratio, crop; can, history, three of the correction. By request:
        // made;
        // two for P1; two for the refused P2; can, history, two for each of two corrections.
        // External: two of the mapper's making; for each query ratio, two of the mapper and
        // history;
        // P2 also can and three of the correction.
        {5, 0, 8, 11, 17},
        // Trace, instant: which stream follows which, two crops, two streams looked at, one that
        // follows, the whole and the end. By request: two for the setting, one for the sensor, the
        // whole and the end.
        {5, 1, 16, 16, 19},
        {5, 2, 18, 16, 19},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << "details " << c.detailsLevel << ", log " << c.logLevel);
        ULogger::sDetailsLevel = c.detailsLevel;
        takeLog();
        instant(c.logLevel);
        EXPECT_EQ(takeLog().size(), c.instant);
        byRequest(c.logLevel);
        EXPECT_EQ(takeLog().size(), c.byRequest);
        external(c.logLevel);
        EXPECT_EQ(takeLog().size(), c.external);
    }

    // That an answer is kept is a trace line; the manager's own log level is 0.
    ZoomOverrideP1Need need;
    mgr->initialize(ZoomOverrideMode::InstantRequest);
    mgr->getP1CropSetting({5, 0.0F, 1}, need);
    takeLog();
    mgr->getP1CropSetting({5, 0.0F, 1}, need);
    EXPECT_EQ(takeLog().size(), 1U) << "what is asked for";
}

}  // namespace
}  // namespace NSCam::Feature
