// run: many records, each in a process of its own.
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

using testing::HasSubstr;

// Request 1 is overridden, 2 has a crop that must grow, 3 is asked less than the override.
std::string const kThreeRequests = std::string(kSensor) +
                                   R"({"op":"initialize","mode":"InstantRequest"}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1},"streamSizes":{"0x70010000000000":[960,540]}}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":1.5,"customStreamCrops":[0,768,432,3072,1728]},"streamIdMap":{"0":"0x70010000000000"}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":2}
{"op":"onRequestDone","requestNo":1}
{"op":"setRunTimeCropNeedData","requestNo":2,"notice":"repeating"}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":6,"customStreamCrops":[0,1920,1080,768,432]},"streamIdMap":{"0":"0x70010000000000"}}
{"op":"getP1CropSetting","requestNo":2,"zoomRatio":8}
{"op":"setRunTimeCropNeedData","requestNo":3,"notice":"repeating"}
{"op":"getP1CropSetting","requestNo":3,"zoomRatio":5}
)";

// The setting names a sensor that the request lacks.
std::string const kExceptionRecord = R"({"op":"initialize","mode":"ByRequest"}
{"op":"setRunTimeCropNeedData","requestNo":1}
{"op":"storeOverrideSetting","requestNo":1,"setting":{"overrideValid":true,"requestNo":9,"zoomRatio":2,"previewAaCrops":{"0":[0,0,8,8]}}}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":1}
)";

constexpr char const* kHeader =
    "requests  overridden  corrected  exceptions  fatal  differences  result   record\n";

class RunTest : public ToolTest {
 protected:
    /// In folders that are made.
    void put(std::string const& name, std::string_view text) const {
        std::filesystem::create_directories(std::filesystem::path(pathOf(name)).parent_path());
        write(name, text);
    }

    /// Of the records, the results that they give.
    void putResults(std::string const& name, std::string_view scenario) const {
        put(name, replay(scenario).out);
    }
};

// The first one takes longest, and is told first.
TEST_F(RunTest, EachRecordHasARowWhateverBecomesOfTheOthers) {
    std::string slow = kThreeRequests;
    for (int line = 0; line < 20000; ++line) {
        slow += kModeLine;
    }
    put("r/a.jsonl", slow);
    put("r/b c/line\nend.jsonl", kThreeRequests);
    put("r/bad.jsonl", kThreeRequests + "{\"op\":\"nope\"}\n");
    put("r/damaged.jsonl", "{\n");
    put("r/empty.jsonl", "");
    put("r/exception.jsonl", kExceptionRecord);
    put("r/fatal.jsonl", kFatalLine);
    std::filesystem::create_symlink("/proc/self/mem", pathOf("r/io.jsonl"));
    std::filesystem::create_symlink(".", pathOf("r/loop"));
    mkfifo(pathOf("r/fifo.jsonl").c_str(), 0600);
    put("r/packed.jsonl.gz", "\x1f\x8b");
    put("r/torn.jsonl", kThreeRequests.substr(0, kThreeRequests.size() - 9));
    put("r/.hidden.jsonl", "{");
    put("r/notes.txt", "{");
    put("r/z-results.jsonl", kModeResult);
    put("r/y/results.jsonl", kModeResult);
    std::filesystem::create_directory(pathOf("r/closed"));
    std::filesystem::permissions(pathOf("r/closed"), std::filesystem::perms::none);
    auto const result = run({"run", "r", "none", "r/a.jsonl", "--jobs", "3"}, "", [] {
        prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);  // root's, to look into anything
        prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    });

    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out,
              std::string(kHeader) +
                  R"(       0           0          0           0      0            -  broken   none
       3           2          1           0      0            -  ok       r/a.jsonl
       3           2          1           0      0            -  ok       r/b c/line?end.jsonl
       3           2          1           0      0            -  broken   r/bad.jsonl
       0           0          0           0      0            -  broken   r/closed
       0           0          0           0      0            -  broken   r/damaged.jsonl
       0           0          0           0      0            -  ok       r/empty.jsonl
       1           0          0           1      0            -  ok       r/exception.jsonl
       0           0          0           0      1            -  fatal    r/fatal.jsonl
       0           0          0           0      0            -  broken   r/io.jsonl
       0           0          0           0      0            -  broken   r/packed.jsonl.gz
       3           2          1           0      0            -  ok       r/torn.jsonl
12 records: 5 ok, 6 broken, 1 fatal
)");
    EXPECT_THAT(
        result.err,
        testing::MatchesRegex(
            "r/(z-|y/)results.jsonl: holds results, no record: left out, and 1 more like it\n"
            "none: cannot open: No such file or directory\n"
            "r/bad.jsonl:12: nope: unknown operation\n"
            "r/closed: cannot open: Permission denied\n"
            "r/damaged.jsonl:1: [^\n]*\n"
            "(.*feature/.*\n)+"
            "r/fatal.jsonl:1: getHistoryCropNeedData: the library stopped the process\n"
            "r/io.jsonl: cannot read: Input/output error\n"
            "r/packed.jsonl.gz: is packed; only plain JSON Lines are replayed\n"
            "r/torn.jsonl:11: cut off; the record ends with the line before\n"));
    for (char const* ending : {"gz", "xz", "zst", "bz2"}) {
        EXPECT_THAT(run({"run", std::string("r/a.jsonl.") + ending}).err,
                    HasSubstr(": is packed; "));
    }
}

// More than a pipe hands over at once.
TEST_F(RunTest, EverythingThatIsSaidOfARecordIsPassedOn) {
    std::string const folder = std::string(240, 'd') + "/" + std::string(240, 'e');
    std::string scenario;
    std::string said;
    for (int line = 1; line <= 12; ++line) {
        scenario += kModeLine;
        if (line <= 10) {
            said += folder + "/a.jsonl:" + std::to_string(line) +
                    ": getZoomOverrideMode: expected no result, got one\n";
        }
    }
    put(folder + "/a.jsonl", scenario);
    put("expected/a.jsonl", "");

    EXPECT_EQ(run({"run", folder + "/a.jsonl", "--compare-to", "expected"}).err,
              said + "and 2 more differences\n12 results differ, in 0 requests\n");
}

TEST_F(RunTest, ComparesWithTheResultsOfTheSameName) {
    put("r/a.jsonl", kThreeRequests);
    put("r/sub/a.jsonl", kModeLine);
    put("r/sub/new.jsonl", kModeLine);
    putResults("r/expected/a.jsonl", kThreeRequests);
    putResults("r/expected/sub/a.jsonl", std::string(kModeLine) + std::string(kModeLine));
    auto const result = run({"run", "r", "--compare-to", "r/expected"});

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(
        result.out,
        std::string(kHeader) +
            R"(       3           2          1           0      0            0  ok       r/a.jsonl
       0           0          0           0      0            1  differs  r/sub/a.jsonl
       0           0          0           0      0            -  broken   r/sub/new.jsonl
3 records: 1 ok, 1 differs, 1 broken
)");
    EXPECT_EQ(result.err,
              "r/expected/sub/a.jsonl:2: getZoomOverrideMode: expected a result, got none\n"
              "1 result differs, in 0 requests\n"
              "r/sub/new.jsonl: no expected results: r/expected/sub/new.jsonl: cannot open: "
              "No such file or directory\n");

    EXPECT_EQ(run({"run", "r/a.jsonl", "--compare-to", "r/expected"}).status, 0);
    EXPECT_EQ(
        outputOf(run({"run", "r/a.jsonl", "r/sub/a.jsonl"})),
        std::string(kHeader) +
            R"(       3           2          1           0      0            -  ok       r/a.jsonl
       0           0          0           0      0            -  ok       r/sub/a.jsonl
2 records: 2 ok
)");
    EXPECT_EQ(run({"run", "r/sub/a.jsonl", "--compare-to", "r/expected/sub"}).status, 1);
    EXPECT_EQ(run({"run", "r/sub/a.jsonl", "--compare-to", "r/expected", "--root", "./r"}).status,
              1);
}

// And records leave nothing open behind them, nor to each other: the streams, a pipe for each of
// twenty and two to spare are what run may have, and what a sanitizer needs of it.
TEST_F(RunTest, ListsEndNamesByZeroBytesOrLineEnds) {
    put("a b.jsonl", kModeLine);
    put("line\nend.jsonl", kModeLine);
    put("-", "{\n");  // unlike standard input, of which nothing is left
    for (int i = 10; i < 50; ++i) {
        put("many/" + std::to_string(i) + ".jsonl", kModeLine);
    }
    auto const records = [this](std::string const& list) {
        std::string const out = run({"run", "-", "--jobs", "20"}, list, [] {
                                    closefrom(STDERR_FILENO + 1);
                                    rlimit const few{25, 25};
                                    setrlimit(RLIMIT_NOFILE, &few);
                                }).out;
        auto const end = out.rfind('\n', out.size() - 2) + 1;
        return out.substr(end);
    };
    EXPECT_EQ(records("a b.jsonl\n-"), "2 records: 1 ok, 1 broken\n");
    EXPECT_EQ(records(std::string("line\nend.jsonl\0a b.jsonl\0", 24)), "2 records: 2 ok\n");
    EXPECT_EQ(records(std::string(70000, '\n') + "a b.jsonl"), "1 record: 1 ok\n");
    EXPECT_EQ(records("\na b.jsonl\n\nline\nend.jsonl\n"), "3 records: 1 ok, 2 broken\n");
    EXPECT_EQ(records("many"), "40 records: 40 ok\n");
}

struct Refused {
    std::vector<std::string> arguments;
    char const* message;
};

// Nothing is replayed, and no file touched.
TEST_F(RunTest, RefusesBeforeItBegins) {
    put("a.jsonl", kModeLine);
    put("r/a.jsonl", kModeLine);
    put("r/none/notes.txt", "");
    put("e/a.jsonl", kModeResult);
    put("old.xml", "old");
    auto const before = readAll();
    Refused const kRefused[] = {
        {{}, "RECORD is required"},
        {{"-"}, "<stdin>: names no records\n"},
        {{"r/none"}, "r/none: has no records, which end in .jsonl\n"},
        {{"a.jsonl", "--jobs", "0"}, "--jobs: Value 0 not in range 1 to 1024\n"},
        {{"a.jsonl", "--job", "1"}, "--job: unknown option; did you mean --jobs?\n"},
        {{"r", "--compare-to", "no"}, "no: cannot open: No such file or directory\n"},
        {{"r", "--compare-to", "a.jsonl"}, "a.jsonl: cannot open: Not a directory\n"},
        {{"a.jsonl", "r/a.jsonl", "--compare-to", "e"},
         "r/a.jsonl: has the same name as a.jsonl; tell them apart with --root\n"},
        {{"a.jsonl", "--root", "r"}, "a.jsonl: is not below r\n"},
        {{"a.jsonl", "--root", "a"}, "a: cannot open: No such file or directory\n"},
        {{"r", "--junit", "no/j.xml"}, "no/j.xml: cannot open: No such file or directory\n"},
        {{"r", "--junit", "./r/a.jsonl"}, "./r/a.jsonl: is also read from"},
        {{"r", "--compare-to", "e", "--junit", "e/a.jsonl"}, "e/a.jsonl: is also read from"},
        {{"r", "--junit", "-"}, "<stdout>: is written to twice"},
    };
    for (auto const& [arguments, message] : kRefused) {
        std::vector<std::string> all{"run"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        auto const result = run(all);

        EXPECT_EQ(result.status, 2) << message;
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr(message));
    }
    EXPECT_EQ(readAll(), before);
}

}  // namespace
}  // namespace zoomreplay::test
