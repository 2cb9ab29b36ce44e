// Options, files and standard streams.
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

class CommandLineTest : public ToolTest {
 protected:
    CommandLineTest() { write("s.jsonl", kModeLine); }
};

TEST_F(CommandLineTest, HelpHasAnExample) {
    auto const result = run({"--help"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, testing::HasSubstr("zoomreplay pinch.jsonl -o"));
}

struct BadUsage {
    std::vector<std::string> arguments;
    char const* message;
};

void PrintTo(BadUsage const& usage, std::ostream* out) {
    *out << testing::PrintToString(usage.arguments);
}

class BadUsageTest : public CommandLineTest, public testing::WithParamInterface<BadUsage> {};

TEST_P(BadUsageTest, HasStatusTwoAndLosesNothing) {
    auto const result = run(GetParam().arguments);

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, testing::HasSubstr(GetParam().message));
    EXPECT_EQ(read("s.jsonl"), kModeLine);
}

BadUsage const kBadUsages[] = {
    {{}, "SCENARIO is required"},
    {{"s.jsonl", "t.jsonl"}, "not expected: t.jsonl"},
    {{"s.jsonl", "--fast"}, "not expected: --fast"},
    {{"s.jsonl", "-o"}, "required"},
    {{"t.jsonl"}, "t.jsonl: cannot open: No such file or directory\n"},
    {{"."}, ".: cannot read: Is a directory\n"},
    {{"s.jsonl", "--compare", "e.jsonl"}, "e.jsonl: cannot open: No such file or directory\n"},
    {{"s.jsonl", "-o", "no/r.jsonl"}, "no/r.jsonl: cannot open: No such file or directory\n"},
    {{"s.jsonl", "-o", "s.jsonl"}, "s.jsonl: is also read from"},
    {{"s.jsonl", "-o", "../s.jsonl/../s.jsonl"}, "cannot open"},
    {{".in", "--compare", "s.jsonl", "-o", "./s.jsonl"}, "./s.jsonl: is also read from"},
    {{"-", "--compare", "-"}, "<stdin>: cannot be both SCENARIO and EXPECTED\n"},
    {{"s.jsonl", "-o", "/dev/full"}, "/dev/full: cannot write: No space left on device\n"},
};
INSTANTIATE_TEST_SUITE_P(All, BadUsageTest, testing::ValuesIn(kBadUsages));

TEST_F(CommandLineTest, DashIsAStandardStream) {
    EXPECT_EQ(run({"-", "-o", "-"}, kModeLine).out, kModeResult);
    EXPECT_EQ(run({"-"}, "{}\n").err, "<stdin>:1: op: missing\n");
    EXPECT_EQ(run({"s.jsonl", "-o", "-", "--compare", "-"}, kModeResult).status, 0);
}

TEST_F(CommandLineTest, ResultsReplaceWhatTheFileHeld) {
    write("r.jsonl", std::string(1000, 'x'));
    auto const result = run({"s.jsonl", "-o", "r.jsonl"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(read("r.jsonl"), kModeResult);
}

}  // namespace
}  // namespace zoomreplay::test
