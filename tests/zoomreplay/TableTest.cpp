// The table for people. Whole tables are in views/.
#include <sstream>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

size_t widthOf(std::string const& text) {
    std::istringstream lines(text);
    size_t width = 0;
    for (std::string line; std::getline(lines, line);) {
        width = std::max(width, line.size());
    }
    return width;
}

class TableTest : public ToolTest {
 protected:
    ToolRun show(std::string_view scenario, std::vector<std::string> const& more = {}) const {
        write("s.jsonl", scenario);
        std::vector<std::string> arguments{"s.jsonl"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
};

TEST_F(TableTest, NeverExceedsItsWidth) {
    std::string const rect = "[-2147483648,-2147483648,-2147483648,-2147483648]";
    auto const result = show(
        R"({"op":"getP1CropSetting","requestNo":4294967295,"zoomRatio":-1.2345e-38,"need":{"zoomRatio":-1.2345e-38,"tgCrops":{"4294967295":{"0x7001":)" +
            rect + ",\"0x7002\":" + rect + "}}}}\n" + std::string(kFatalLine),
        {"--log"});

    EXPECT_EQ(result.status, 3);
    EXPECT_LE(widthOf(result.out), 100U);
    std::string const crop = "(-2147483648, -2147483648)/-2147483648x-2147483648\n";
    EXPECT_THAT(result.out, testing::HasSubstr("4294967295 0x7001  " + crop));
    EXPECT_THAT(result.out, testing::HasSubstr("4294967295 0x7002  " + crop));
}

TEST_F(TableTest, TellsWhenThereIsNothingToShow) {
    EXPECT_EQ(show(kModeLine).out, "Nothing to show: no line asks for a crop.\n");
}

TEST_F(TableTest, TellsWhatWentWrongAndWhatWasLogged) {
    auto const result = show(std::string(kModeLine) + std::string(kFatalLine), {"--log"});

    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.out,
                testing::MatchesRegex(" +line .*\n +1  getZoomOverrideMode\n"
                                      " +2  getHistoryCropNeedData: fatal:\n"
                                      "         \\(getHistoryCropNeedData\\)\\{#[0-9]+:"
                                      "feature/common/zoomoverride/ZoomOverrideMgr.cpp\\}\n"
                                      "         print 1  .*\\[Fatal\\] .* req\\(9\\) not exist\n"));
}

}  // namespace
}  // namespace zoomreplay::test
