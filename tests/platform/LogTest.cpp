// Both log sinks: their switches, where their lines go, and the capture that tests and tools read.
#include <android/log.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "DebugWrapper.h"
#include "ULogger.h"
#include "host/LiblogCallback.h"
#include "host/LogCapture.h"
#include "host/LogSwitches.h"

namespace {

using NSCam::Host::LogLine;
using NSCam::Host::LogSink;
using NSCam::Utils::ULog::ULogger;

class LogTest : public testing::Test {
 protected:
    LogTest() { NSCam::Host::captureLog(true); }
    ~LogTest() override {
        NSCam::Host::captureLog(false);
        NSCam::Host::resetLogSwitches();
    }
};

TEST_F(LogTest, CapturesBothSinksInOrder) {
    std::string const longLine(5000, 'a');
    log_dbg_print("test", 0, "%s:%d", "request", 7);
    ULogger::sULogger->print(0, "test", 5, "length counts!", 13);
    log_dbg_print("test", 2, "%s", longLine.c_str());

    std::vector<LogLine> const expected{{LogSink::Print, 0, "request:7"},
                                        {LogSink::Unified, 5, "length counts"},
                                        {LogSink::Print, 2, longLine}};
    EXPECT_EQ(NSCam::Host::takeCapturedLog(), expected);
    EXPECT_TRUE(NSCam::Host::takeCapturedLog().empty());
}

TEST_F(LogTest, CallbacksTakeTheLinesOfAnyLiblog) {
    struct Data {};
    struct Message {
        char const* message;
    };
    static std::string sText;
    constexpr auto kKeep = [](auto const* line, auto... text) {
        sText = NSCam::Host::textOf(line, text...);
    };

    void (*const takesBoth)(Data const*, char const*) = kKeep;
    takesBoth(nullptr, "beside the line");
    EXPECT_EQ(sText, "beside the line");

    Message const message{"within"};
    void (*const takesOne)(Message const*) = kKeep;
    takesOne(&message);
    EXPECT_EQ(sText, "within");
}

// Debug lines are level 0 of one sink and level 5 of the other.
TEST_F(LogTest, LevelsBecomePrioritiesOfLiblog) {
    static std::vector<std::pair<int32_t, std::string>> lines;
    lines.clear();
    auto const before = __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    __android_log_set_logger([](__android_logger_data const* line, char const* text) {
        lines.emplace_back(line->priority, std::string(line->tag) + ": " + text);
    });
    for (int32_t const level : {0, 1, 2, 3}) {
        log_dbg_print("print", level, "%d", level);
    }
    for (int32_t const level : {1, 2, 3, 5}) {
        ULogger::sULogger->print(0, "unified", level, "text", 4);
    }
    __android_log_set_logger(__android_log_stderr_logger);
    __android_log_set_minimum_priority(before);

    std::vector<std::pair<int32_t, std::string>> const expected{
        {ANDROID_LOG_DEBUG, "print: 0"},      {ANDROID_LOG_ERROR, "print: 1"},
        {ANDROID_LOG_WARN, "print: 2"},       {ANDROID_LOG_INFO, "print: 3"},
        {ANDROID_LOG_ERROR, "unified: text"}, {ANDROID_LOG_WARN, "unified: text"},
        {ANDROID_LOG_INFO, "unified: text"},  {ANDROID_LOG_DEBUG, "unified: text"}};
    EXPECT_EQ(lines, expected);
}

TEST_F(LogTest, KeepsLinesOfAllThreads) {
    constexpr size_t kLines = 200000;
    __android_log_set_logger([](__android_logger_data const*, char const*) {});
    std::atomic<bool> isOver{false};
    std::thread other([&] {
        for (size_t i = 0; i < kLines; ++i) {
            log_dbg_print("test", 0, "line");
            ULogger::sULogger->print(0, "test", 5, "line", 4);
        }
        isOver = true;
    });
    size_t own = 0;
    size_t taken = 0;
    for (; !isOver; ++own) {
        ULogger::sULogger->print(0, "test", 5, "line", 4);
        taken += NSCam::Host::takeCapturedLog().size();
    }
    other.join();
    __android_log_set_logger(__android_log_stderr_logger);

    EXPECT_EQ(taken + NSCam::Host::takeCapturedLog().size(), 2 * kLines + own);
}

TEST_F(LogTest, ResetRestoresSwitches) {
    ULogger::sMode = 0;
    ULogger::sDetailsLevel = 0;
    ULogger::sNormalDetailsMask = 0;
    NSCam::Host::setPrintLevel(2, false);
    EXPECT_EQ(g_logInfoLv[2].flag & kLogLevelOn, 0);
    EXPECT_EQ(g_logInfoLv[1].flag & kLogLevelOn, kLogLevelOn);

    NSCam::Host::resetLogSwitches();

    EXPECT_EQ(ULogger::sMode, 11U);
    EXPECT_EQ(ULogger::sDetailsLevel, 3);
    EXPECT_EQ(ULogger::sNormalDetailsMask, 0xFFFFFFFFU);
    EXPECT_EQ(g_logInfoLv[2].flag & kLogLevelOn, kLogLevelOn);
}

}  // namespace
