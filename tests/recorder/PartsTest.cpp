// The record's files where a device makes trouble: whatever happens, whole lines stay whole, the
// trouble is reported once and the caller notices nothing.
#include <android/log.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "LiveState.h"
#include "PartWriter.h"
#include "Settings.h"
#include "TestFolder.h"
#include "host/LiblogCallback.h"

namespace zoomrecorder {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::vector<std::string> sReports;

class PartsTest : public ::testing::Test {
 protected:
    PartsTest() {
        sReports.clear();
        __android_log_set_logger([](auto const* line, auto... text) {
            sReports.emplace_back(NSCam::Host::textOf(line, text...));
        });
    }

    static std::string read(std::string const& path, size_t from = 0) {
        std::ifstream file(path);
        file.seekg(static_cast<std::streamoff>(from));
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    /// Without the times, one of which comes in between whenever a second is over.
    static std::string readCalls(std::string const& path) {
        std::istringstream text(read(path));
        std::string calls;
        for (std::string line; std::getline(text, line);) {
            calls += line.starts_with("//") ? "" : line + '\n';
        }
        return calls;
    }

    TestFolder const mFolder;
    std::string const& mPath = mFolder.record;
};

TEST_F(PartsTest, UnwritablePathIsReportedOnce) {
    std::string const path = mFolder.path + "/missing/record.jsonl";
    PartWriter record({path, 4000});
    record.add({}, "{}\n");
    record.add({}, "{}\n");

    EXPECT_TRUE(record.hasFailed());
    EXPECT_THAT(sReports, ElementsAre(path + ": No such file or directory; recording ends, the "
                                             "camera goes on"));
    EXPECT_GE(::fcntl(STDIN_FILENO, F_GETFD), 0) << "a descriptor of somebody else was closed";

    // The name of a part before is two characters longer, which no file system has room for.
    std::string const longest = mFolder.path + "/" + std::string(254, 'r');
    EXPECT_TRUE(PartWriter({longest, 4000}).hasFailed());
    EXPECT_THAT(sReports.back(), StartsWith(longest + ".2: File name too long"));
}

TEST_F(PartsTest, WhatIsNotAFileIsLeftAlone) {
    std::ofstream(mFolder.path + "/file") << "of somebody else";
    for (auto const& name : {mPath + ".3", mPath + ".1", mPath}) {
        std::filesystem::create_symlink("file", name);
        PartWriter record({mPath, 4000});

        EXPECT_TRUE(record.hasFailed());
        EXPECT_TRUE(std::filesystem::is_symlink(name));
    }
    EXPECT_THAT(sReports, ElementsAre(HasSubstr(mPath + ".3: not a regular file"),
                                      HasSubstr(mPath + ".1: not a regular file"),
                                      HasSubstr(mPath + ": not a regular file")));
    EXPECT_THAT(read(mFolder.path + "/file"), "of somebody else");
}

/// Files end after so many bytes.
class FullDisk {
 public:
    explicit FullDisk(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &mBefore);
        rlimit const full{bytes, mBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &mBefore); }
    FullDisk(FullDisk const&) = delete;
    FullDisk& operator=(FullDisk const&) = delete;

 private:
    rlimit mBefore{};
};

TEST_F(PartsTest, FailureIsReportedWithItsReason) {
    PartWriter record({mPath, 400000});
    record.add({}, "{}\n");
    FullDisk const full(std::filesystem::file_size(mPath));
    record.add({}, "{}\n");

    EXPECT_THAT(sReports, ElementsAre(HasSubstr("record.jsonl: File too large; recording ends")));
}

TEST_F(PartsTest, FullDiskLeavesWholeLines) {
    std::string const line = '{' + std::string(97, 'x') + "}\n";
    PartWriter record({mPath, 400000});
    {
        FullDisk const full(1001);
        for (int i = 0; i < 30; ++i) {
            record.add({}, line);
            record.noteDuration(7);  // the disk is full in the middle of one
        }
    }
    EXPECT_THAT(sReports, ElementsAre(HasSubstr("record.jsonl: No space left on device; ")));
    EXPECT_THAT(read(mPath), EndsWith("\n" + line));
    EXPECT_GT(std::filesystem::file_size(mPath), 800U);
}

TEST_F(PartsTest, RestartedProcessKeepsTheRecordOfTheCrash) {
    auto const openFiles = [] {
        std::filesystem::directory_iterator const files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    auto const before = openFiles();
    for (auto const* line : {"first\n", "second\n", "third\n", "fourth\n", "fifth\n"}) {
        PartWriter({mPath, 4000}).add({}, line);
    }
    EXPECT_EQ(openFiles(), before);

    EXPECT_THAT(read(mPath), EndsWith("fifth\n"));
    EXPECT_THAT(read(mPath + ".1"), EndsWith("fourth\n"));
    EXPECT_THAT(read(mPath + ".3"), EndsWith("second\n"));
    EXPECT_FALSE(std::filesystem::exists(mPath + ".4"));
    EXPECT_THAT(sReports, IsEmpty());
}

TEST_F(PartsTest, RequestsThatAreNeverDoneDoNotFillTheMemory) {
    LiveState state(1000);
    for (uint32_t i = 0; i < 1000; ++i) {
        state.add({LineKind::Deposit, i}, "deposit of " + std::to_string(i) + "\n");
        state.add({LineKind::P1Query, i}, "query of " + std::to_string(i) + "\n");
    }
    std::string text;
    state.appendTo(text);

    EXPECT_LT(text.size(), 1200U);
    EXPECT_THAT(text, HasSubstr("deposit of 999\nquery of 999\n"));
    // A query without its deposit would end the replay.
    auto const query = text.find("query of ");
    auto const first = text.substr(query + 9, 3);
    EXPECT_THAT(text.substr(0, query), HasSubstr("deposit of " + first));

    // Once all that it still knows of are done, it remembers no more of them.
    for (uint32_t i = 900; i < 1001; ++i) {
        state.add({LineKind::Done, i}, "done\n");
    }
    EXPECT_EQ(state.size(), std::strlen("deposit of 999\n"));

    // A number that it has given up may come again.
    state.add({LineKind::P1Query, 0}, "query\n");
    EXPECT_EQ(state.size(), std::strlen("deposit of 999\nquery\n"));
}

TEST_F(PartsTest, NewSessionNeedsNothingOfTheOneBefore) {
    LiveState state(1000);
    state.add({LineKind::Property, 1}, "property\n");
    state.add({LineKind::Sensor, 1}, "sensor\n");
    state.add({LineKind::Publish}, "publish\n");
    state.add({LineKind::Deposit, 1}, "deposit, never done\n");
    state.add({LineKind::Metadata}, "metadata\n");
    state.add({LineKind::Initialize}, "initialize\n");
    state.add({LineKind::Setting}, "setting\n");
    std::string text;
    state.appendTo(text);

    EXPECT_EQ(text, "property\nsensor\npublish\ninitialize\nsetting\n");
    EXPECT_EQ(state.size(), text.size());
}

// A process that is killed while it writes leaves the text up to the end of a page, over what stood
// there before.
TEST_F(PartsTest, TornWriteTearsOnlyTheLastLine) {
    constexpr size_t kPage = 4096;
    auto const isWhole = [](std::string_view line) {
        return line.starts_with("// ") || line.ends_with("1}") || line.ends_with(": 123456}");
    };
    PartWriter record({mPath, 1U << 20U});
    size_t durations = 0;
    for (size_t i = 0; i < 3000; ++i) {
        size_t const size = std::filesystem::file_size(mPath);
        size_t const lastPage = size / kPage * kPage;
        size_t const start = lastPage - std::min(lastPage, kPage);
        std::string const before = read(mPath, start);
        record.add({}, "{\"t\": " + std::string(20 + i % 23, '1') + "}\n");
        record.noteDuration(123456);
        std::string const after = read(mPath, start);

        for (size_t page = lastPage - start; page < after.size(); page += kPage) {
            std::string torn = after.substr(0, page);
            torn += before.substr(std::min(page, before.size()));
            std::string const whole = torn.substr(0, torn.rfind('\n'));
            auto const lastLine = whole.substr(whole.rfind('\n') + 1);
            ASSERT_GE(whole.size() + 1, before.size());
            ASSERT_TRUE(isWhole(lastLine)) << i << ": " << lastLine;
        }
        durations += after.find("123456", size - start - 2) != std::string::npos ? 1U : 0U;
    }
    EXPECT_GT(durations, 2900U);
}

TEST_F(PartsTest, RequestLargerThanAPartStaysInOne) {
    PartWriter record({mPath, 4000});
    std::string const deposit = "{deposit " + std::string(5000, 'x') + "}\n";
    std::string queries;
    record.add({}, "{anything " + std::string(5000, 'x') + "}\n");
    EXPECT_FALSE(std::filesystem::exists(mPath + ".1")) << "nothing was in the first part";
    record.add({LineKind::Deposit, 1}, "{earlier}\n");
    record.add({LineKind::Deposit, 2}, deposit);
    for (int i = 0; i < 20; ++i) {
        queries += "{query " + std::to_string(i) + "}\n";
        record.add({LineKind::P1Query, 2}, "{query " + std::to_string(i) + "}\n");
    }
    EXPECT_THAT(readCalls(mPath), AllOf(HasSubstr("{earlier}\n"), EndsWith(deposit + queries)));

    record.add({LineKind::Done, 1}, "{done 1}\n");
    record.add({LineKind::Done, 2}, "{done 2}\n");
    record.add({LineKind::Deposit, 3}, "{small}\n");  // until then it may be repeated
    record.add({LineKind::Done, 3}, "{done 3}\n");
    record.add({}, "{after}\n");
    EXPECT_THAT(readCalls(mPath + ".1"),
                EndsWith(deposit + queries + "{done 1}\n{done 2}\n{small}\n{done 3}\n"));
    // The deposit may still be repeated, its own request is done.
    EXPECT_THAT(readCalls(mPath),
                AllOf(HasSubstr("{small}\n{\"op\": \"onRequestDone\", \"requestNo\": 3}\n"),
                      EndsWith("{after}\n")));
}

TEST_F(PartsTest, LineThatDoesNotFitBeginsAPart) {
    PartWriter record({mPath, 4000});
    std::string const line = '{' + std::string(400, 'x') + "}\n";
    for (int i = 0; i < 3; ++i) {
        record.add({}, line);
    }
    EXPECT_EQ(readCalls(mPath + ".1"), line + line);
    EXPECT_EQ(readCalls(mPath), line);
}

TEST_F(PartsTest, RequestInFlightIsInEachPart) {
    PartWriter record({mPath, 4000});
    std::string const request = "{deposit " + std::string(600, 'x') + "}\n{query}\n";
    record.add({LineKind::Deposit, 1}, request.substr(0, request.size() - 8));
    record.add({LineKind::P1Query, 1}, "{query}\n");
    for (int i = 0; i < 200; ++i) {
        record.add({}, "{anything}\n");
    }
    EXPECT_THAT(readCalls(mPath), StartsWith(request + "{anything}\n"));
    EXPECT_THAT(readCalls(mPath + ".1"), StartsWith(request + "{anything}\n"));
}

TEST_F(PartsTest, BytesThatMakeNoSenseAreReported) {
    setenv("ZOOMOVERRIDE_RECORD", "", 1);
    setenv("ZOOMOVERRIDE_RECORD_BYTES", "", 1);
    EXPECT_EQ(settingsFromEnvironment().path, "zoomoverride.jsonl");
    setenv("ZOOMOVERRIDE_RECORD", mPath.c_str(), 1);
    setenv("ZOOMOVERRIDE_RECORD_BYTES", "16M", 1);
    auto const settings = settingsFromEnvironment();
    EXPECT_EQ(settings.path, mPath);
    EXPECT_EQ(settings.bytes, 67108864U);

    setenv("ZOOMOVERRIDE_RECORD_BYTES", "65535", 1);
    EXPECT_EQ(settingsFromEnvironment().bytes, 65536U);
    for (uint64_t const enough : {65536U, 65537U}) {
        setenv("ZOOMOVERRIDE_RECORD_BYTES", std::to_string(enough).c_str(), 1);
        EXPECT_EQ(settingsFromEnvironment().bytes, enough);
    }

    EXPECT_THAT(sReports, ElementsAre(HasSubstr("not a number of bytes: 16M"),
                                      HasSubstr("65535 is too little, taken as 65536")));
}

}  // namespace
}  // namespace zoomrecorder
