// Outputs are whole or untouched, whatever ends the run.
#include <fcntl.h>
#include <linux/capability.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>

#include "ToolTest.h"
#include "base/Process.h"
#include "base/UnfinishedFile.h"

namespace zoomreplay::test {
namespace {

using testing::EndsWith;
using testing::StartsWith;

class OutputTest : public ToolTest {
 protected:
    OutputTest() {
        write("s.jsonl", kModeLine);
        write("r.html", "old report");
        write("t.json", "old trace");
    }

    /// Files end after so many bytes, as on a full disk. So do counts of coverage, which must not
    /// be those of the other runs, nor be complained of.
    static std::function<void()> fullAfter(rlim_t bytes) {
        return [bytes] {
            setenv("GCOV_PREFIX", ".coverage", 1);
            setenv("GCOV_ERROR_FILE", "/dev/null", 1);
            rlimit const limit{bytes, bytes};
            setrlimit(RLIMIT_FSIZE, &limit);
        };
    }
};

TEST_F(OutputTest, FullDiskKeepsTheOldReportAndTrace) {
    write("e.jsonl", "");
    auto const before = readAll();
    auto const report =
        run({"s.jsonl", "--report", "r.html", "--compare", "e.jsonl"}, "", fullAfter(5000));
    auto const trace = run({"s.jsonl", "--trace", "t.json"}, "", fullAfter(100));

    EXPECT_EQ(report.status, 2);
    EXPECT_EQ(report.err,
              "s.jsonl:1: getZoomOverrideMode: expected no result, got one\n"
              "1 result differs, in 0 requests\n"
              "r.html: cannot write: File too large\n");
    EXPECT_EQ(trace.status, 2);
    EXPECT_EQ(readAll(), before);
}

TEST_F(OutputTest, WhatComesBeforeAFullDiskIsToldOnce) {
    auto const result = run({"s.jsonl", "--jumps", "--report", "/dev/full"});
    EXPECT_EQ(result.out, "No jumps: the picture moves with the asked ratio.\n");
    EXPECT_EQ(result.err, "/dev/full: cannot write: No space left on device\n");
}

TEST_F(OutputTest, FullDiskLeavesWholeLinesOfResults) {
    std::string lines;
    for (int i = 0; i < 100; ++i) {
        lines += kModeLine;
    }
    write("s.jsonl", lines);
    auto const result = run({"s.jsonl", "-o", "r.jsonl"}, "", fullAfter(1000));

    EXPECT_EQ(result.status, 2);
    EXPECT_GT(read("r.jsonl").size(), 900U);
    EXPECT_THAT(read("r.jsonl"), EndsWith("}\n"));
}

TEST_F(OutputTest, FullDiskLeavesNoNewScenario) {
    auto const before = readAll();
    EXPECT_EQ(run({"new", "n.jsonl"}, "", fullAfter(100)).status, 2);
    EXPECT_EQ(readAll(), before);
}

// A replay whose scenario goes on for as long as the test wants.
TEST_F(OutputTest, SignalKeepsTheOldReportAndWholeLinesOfResults) {
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        std::array<int, 2> in{};
        ASSERT_EQ(pipe2(in.data(), O_CLOEXEC), 0);
        pid_t const child = fork();
        if (child == 0) {
            dup2(in[0], STDIN_FILENO);
            std::string const results = pathOf("r.jsonl");
            std::string const report = pathOf("r.html");
            std::string const trace = pathOf("t.json");
            execl(ZOOMREPLAY_PATH, ZOOMREPLAY_PATH, "-", "-o", results.c_str(), "--report",
                  report.c_str(), "--trace", trace.c_str(), nullptr);
            _exit(127);
        }
        close(in[0]);
        ASSERT_GT(::write(in[1], kModeLine.data(), kModeLine.size()), 0);
        for (int i = 0; i < 1000 && read("r.jsonl") != kModeResult; ++i) {
            usleep(10000);
        }
        EXPECT_EQ(run({"s.jsonl", "--report", "r.html"}).status, 0);  // of another run
        std::string const report = read("r.html");
        kill(child, signal);
        int status = 0;
        waitpid(child, &status, 0);
        close(in[1]);

        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_EQ(read("r.jsonl"), kModeResult);
        EXPECT_EQ(read("r.html"), report);
        EXPECT_EQ(read("t.json"), "old trace");
        std::filesystem::remove(pathOf("r.jsonl"));
    }
    EXPECT_EQ(readAll().size(), 3U);
}

using OutputDeathTest = OutputTest;

TEST_F(OutputDeathTest, SignalRemovesAnUnfinishedFile) {
    auto const dieOf = [this](int signal) {
        prepareProcess();
        UnfinishedFile file(pathOf("part"), "part");
        file.file().write("half of ");
        std::raise(signal);
    };
    auto const before = readAll();
    EXPECT_EXIT(dieOf(SIGTERM), testing::KilledBySignal(SIGTERM), "");
    EXPECT_EQ(readAll(), before);
}

// As nohup starts it.
TEST_F(OutputDeathTest, SignalThatIsIgnoredStaysIgnored) {
    auto const goOn = [] {
        std::signal(SIGHUP, SIG_IGN);
        prepareProcess();
        std::raise(SIGHUP);
        _exit(0);
    };
    EXPECT_EXIT(goOn(), testing::ExitedWithCode(0), "");
}

TEST_F(OutputTest, ReportTakesThePlaceOfTheOldOne) {
    std::filesystem::create_symlink("r.html", pathOf("link.html"));
    ASSERT_EQ(chmod(pathOf("r.html").c_str(), 0604), 0);
    auto const result =
        run({"s.jsonl", "-o", "n.jsonl", "--report", "link.html", "--trace", "/dev/null"}, "",
            [] { umask(0027); });
    EXPECT_EQ(result.status, 0);

    auto const permissionsOf = [this](char const* name) {
        return static_cast<unsigned>(std::filesystem::status(pathOf(name)).permissions());
    };
    EXPECT_EQ(permissionsOf("r.html"), 0604U);
    EXPECT_EQ(permissionsOf("n.jsonl"), 0640U);
    EXPECT_TRUE(std::filesystem::is_symlink(pathOf("link.html")));
    EXPECT_THAT(read("r.html"), StartsWith("<!DOCTYPE html>"));
    EXPECT_EQ(readAll().size(), 5U);
}

// Not even by root, who may write anywhere unless that is taken away.
TEST_F(OutputTest, WhatMayNotBeWrittenIsLeftAlone) {
    using std::filesystem::perms;
    std::filesystem::create_directory(pathOf("sub"));
    std::filesystem::permissions(pathOf("sub"), perms::owner_read | perms::owner_exec);
    std::filesystem::permissions(pathOf("r.html"), perms::owner_read);
    for (std::string const path : {"r.html", "sub/new.html"}) {
        auto const result = run({"s.jsonl", "-o", "t.json", "--report", path}, "",
                                [] { prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE); });
        EXPECT_EQ(result.err, path + ": cannot open: Permission denied\n");
        EXPECT_EQ(read("t.json"), "old trace");
    }
}

TEST_F(OutputTest, TraceAndComparisonAreWholeWhenNobodyReadsTheResults) {
    write("s.jsonl", std::string(kModeLine) + std::string(kModeLine));
    auto const closePipe = [] {
        std::array<int, 2> out{};
        if (pipe2(out.data(), O_CLOEXEC) != 0 || dup2(out[1], STDOUT_FILENO) < 0) {
            _exit(126);
        }
        close(out[0]);
    };
    EXPECT_EQ(run({"s.jsonl", "-o", "-", "--trace", "t.json"}, "", closePipe).status, 0);
    EXPECT_THAT(read("t.json"), testing::HasSubstr("{\"line\": 2}"));
    write("e.jsonl", kModeResult);
    EXPECT_EQ(run({"s.jsonl", "-o", "-", "--compare", "e.jsonl"}, "", closePipe).status, 1);
}

TEST_F(OutputTest, OneRunAtATimeWritesToAFile) {
    write("r.jsonl", "of the other run");
    int const other = open(pathOf("r.jsonl").c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    auto const result = run({"s.jsonl", "-o", "r.jsonl"});
    close(other);

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "r.jsonl: another run writes to it\n");
    EXPECT_EQ(read("r.jsonl"), "of the other run");
}

TEST_F(OutputTest, LinksToAFolderLeadToOneFile) {
    std::filesystem::create_directory_symlink(".", pathOf("here"));
    EXPECT_EQ(run({"s.jsonl", "--report", "new", "--trace", "here/new"}).err,
              "here/new: is written to twice\n");
}

TEST_F(OutputTest, ClosedStreamsAreNotTakenOver) {
    auto const closing = [](std::vector<int> const& streams) {
        return [streams] {
            for (int const stream : streams) {
                close(stream);
            }
        };
    };
    write("s.jsonl", std::string(kModeLine) + "{}\n");
    EXPECT_EQ(run({"s.jsonl", "-o", "r.jsonl"}, "", closing({0, 2})).status, 2);
    EXPECT_EQ(read("r.jsonl"), kModeResult);

    EXPECT_EQ(run({"s.jsonl", "-o", "-"}, "", closing({1})).err,
              "<stdout>: cannot write: Bad file descriptor\n");
    EXPECT_EQ(run({"-", "-o", "-"}, "", closing({0})).err,
              "<stdin>: cannot read: Bad file descriptor\n");
}

TEST_F(OutputTest, HelpThatCannotBeWrittenIsTold) {
    for (auto const* option : {"--help", "--version"}) {
        auto const result =
            run({option}, "", [] { dup2(open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO); });
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.err, "<stdout>: cannot write: No space left on device\n");
    }
}

}  // namespace
}  // namespace zoomreplay::test
