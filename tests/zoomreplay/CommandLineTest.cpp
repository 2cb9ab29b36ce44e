// Options, files and standard streams.
#include <algorithm>
#include <cctype>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

/// What the pattern's group matches, all over the text.
std::set<std::string> findAll(std::string const& text, char const* pattern) {
    std::regex const regex(pattern);
    std::set<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
        found.insert((*match)[1]);
    }
    return found;
}

/// The long options of a help and what they take, in a man page's words.
std::set<std::string> optionsOf(std::string const& help) {
    std::set<std::string> options;
    for (std::string option :
         findAll(help, "\n  (?:-[a-z],)?--([a-z-]+(?: [A-Z]{2,}(?:[.][a-z]+)?)?)")) {
        std::transform(option.begin(), option.end(), option.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        options.insert(std::regex_replace(option, std::regex(" "), " Ar "));
    }
    return options;
}

class CommandLineTest : public ToolTest {
 protected:
    CommandLineTest() {
        write("s.jsonl", kModeLine);
        write("r.jsonl", "old results");
        write("r.html", "old report");
        write("t.json", "old trace");
    }
};

// In their order: the first one writes what the others read.
TEST_F(CommandLineTest, ExamplesOfTheHelpWork) {
    std::istringstream help(outputOf(run({"--help"})));
    int examples = 0;
    for (std::string line; std::getline(help, line);) {
        if (line.rfind("  zoomreplay ", 0) == 0) {
            std::istringstream words(line.substr(0, line.find("  ", 2)));
            std::vector<std::string> const arguments{std::istream_iterator<std::string>(words), {}};
            EXPECT_EQ(run({arguments.begin() + 1, arguments.end()}).status, 0) << line;
            ++examples;
        }
    }
    EXPECT_GT(examples, 3);
}

TEST_F(CommandLineTest, HelpFitsATerminalAndTheManPage) {
    std::ostringstream man;
    man << std::ifstream(MAN_PAGE).rdbuf();
    std::string help = outputOf(run({"--help"}));
    auto const commands = findAll(help, "\n  ([a-z][a-z-]+)  +[A-Z]");
    for (auto const& command : commands) {
        std::string const own = outputOf(run({command, "--help"}));
        EXPECT_THAT(own, testing::HasSubstr("\nUsage: zoomreplay " + command + " [OPTIONS] "));
        help += own;
    }

    EXPECT_THAT(findAll(help, "\n([^\n]{81,})"), testing::IsEmpty());
    EXPECT_EQ(findAll(man.str(), "Cm ([a-z-]+)"), commands);
    for (std::string const& line : findAll(help, "\n(  [a-z][a-z-]+  +[A-Z])")) {
        EXPECT_EQ(line.size(), 25U) << line;  // below the options
    }
    std::string const page = std::regex_replace(man.str(), std::regex("Fl o "), "Fl -output ");
    size_t const middle = page.find(".Sh DESCRIPTION");
    for (std::string const& part : {page.substr(0, middle), page.substr(middle)}) {
        EXPECT_EQ(findAll(part + ".Op Fl -help\n.Op Fl -version\n",
                          "(?:(?:It|Op|,|[|]) Fl|\n[.]Fl(?=[^\n]* Ar)) "
                          "-([a-z-]+(?: Ar [a-z.]{2,})?)"),
                  optionsOf(help));
    }
}

TEST_F(CommandLineTest, CommandsDoNotHideFiles) {
    write("new", kModeLine);
    write("wy", kModeLine);
    EXPECT_EQ(outputOf(run({"./new", "-o", "-"})), kModeResult);
    EXPECT_EQ(outputOf(run({"wy", "-o", "-"})), kModeResult);
}

TEST_F(CommandLineTest, NewScenarioIsAnInstantRequestUnlessToldOtherwise) {
    EXPECT_EQ(outputOf(run({"new", "-"})), outputOf(run({"new", "-", "--mode", "InstantRequest"})));
}

struct BadUsage {
    std::vector<std::string> arguments;
    char const* message;
};

void PrintTo(BadUsage const& usage, std::ostream* out) {
    *out << testing::PrintToString(usage.arguments);
}

class BadUsageTest : public CommandLineTest, public testing::WithParamInterface<BadUsage> {};

TEST_P(BadUsageTest, HasStatusTwoAndTouchesNoFile) {
    auto const before = readAll();
    auto const result = run(GetParam().arguments);

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, testing::HasSubstr(GetParam().message));
    EXPECT_EQ(readAll(), before);
}

BadUsage const kBadUsages[] = {
    {{}, "SCENARIO is required"},
    {{"s.jsonl", "t.jsonl", "u.jsonl"}, "t.jsonl: one argument too many\nTry zoomreplay --help.\n"},
    {{"s.jsonl", "-"}, "-: one argument too many\n"},
    {{"s.jsonl", "--fast"}, "--fast: unknown option\n"},
    {{"s.jsonl", "--ouput", "r.jsonl"}, "--ouput: unknown option; did you mean --output?\n"},
    {{"wy", "s.jsonl", "1"}, "wy: no such command or scenario; did you mean why?\n"},
    {{"why", "s.jsonl", "1"}, "request 1: no line asks for its crops\n"},
    {{"why", "s.jsonl", "two"}, "REQUEST two: must be A-B or A\n"},
    {{"why", "s.jsonl"}, "REQUEST is required\n"},
    {{"s.jsonl", "--jumps", "-o", "-"}, "--jumps: standard output is for the results\n"},
    {{"s.jsonl", "--requests", "1", "-o", "-"}, "--requests: results are never limited"},
    {{"new", "s.jsonl"}, "s.jsonl: cannot create: File exists\n"},
    {{"new", "n.jsonl", "--mode", "None"}, "Try zoomreplay new --help.\n"},
    {{"s.jsonl", "--requests", "0"}, "--requests: the scenario has no such request\n"},
    {{"s.jsonl", "--limit", "3"}, "--limit requires --jumps\n"},
    {{"s.jsonl", "--differences", "d"}, "--differences requires --compare\n"},
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
    {{"s.jsonl", "-o", "r.jsonl", "--requests", "1-2"}, "--requests: results are never limited"},
    {{"s.jsonl", "-o", "r.jsonl", "--compare", "s.jsonl", "--differences", "./r.jsonl"},
     "./r.jsonl: is written to twice"},
    {{"s.jsonl", "-o", "r.jsonl", "--report", "r.html", "--requests", "5-3"},
     "5-3: ends before it begins"},
    {{"s.jsonl", "-o", "r.jsonl", "--report", "r.html", "--requests", "1-"},
     "1-: must be A-B or A"},
    {{"s.jsonl", "-o", "r.jsonl", "--report", "no/r.html"}, "no/r.html: cannot open: No such file"},
    {{"s.jsonl", "-o", "r.jsonl", "--report", "s.jsonl"}, "s.jsonl: is also read from"},
    {{"s.jsonl", "-o", "r.jsonl", "--report", "../r.jsonl/.."}, "cannot open"},
    {{"s.jsonl", "-o", "r.jsonl", "--report", "."}, ".: cannot open: Is a directory"},
    {{"s.jsonl", "-o", "r.jsonl", "--report", "r.html", "--trace", "./r.jsonl"},
     "./r.jsonl: is written to twice"},
    {{"s.jsonl", "--report", "new", "--trace", "./new"}, "./new: is written to twice"},
    {{"s.jsonl", "--report", "-"}, "<stdout>: is written to twice"},
    {{"s.jsonl", "--report", ".out"}, ".out: is written to twice"},
    {{".out", "-o", "-"}, "<stdout>: is also read from"},
    {{"s.jsonl", "-o", "new", "--report", "r.html", "--compare", "r.jsonl", "--trace", "r.jsonl"},
     "r.jsonl: is also read from"},
    {{"import-rig", "s.jsonl", "-o", "s.jsonl"}, "s.jsonl: is also read from"},
    {{"import-rig", "s.jsonl", "-o", "r.jsonl"}, "s.jsonl: has no characteristics of cameras"},
};
INSTANTIATE_TEST_SUITE_P(All, BadUsageTest, testing::ValuesIn(kBadUsages));

TEST_F(CommandLineTest, DashIsAStandardStream) {
    EXPECT_EQ(outputOf(run({"-", "-o", "-"}, kModeLine)), kModeResult);
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
