// why: crops that are asked for in vain. Whole answers are in views/.
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

using WhyTest = ToolTest;

// In this scenario request 2 is not overridden, and so cannot lack a crop.
TEST_F(WhyTest, MissingRequestsAndCropsAreTold) {
    std::string const scenario = SOURCES "tests/zoomreplay/views/kept.jsonl";
    EXPECT_EQ(run({"why", scenario, "1", "--sensor", "3"}).err,
              "request 1: has no crop of that sensor or port\n");
    EXPECT_EQ(run({"why", scenario, "1-2", "--port", "0x7002"}).err,
              "request 1-2: has no crop of that sensor or port\n");
    EXPECT_EQ(run({"why", scenario, "2", "--port", "0x7002"}).err, "");
    EXPECT_EQ(run({"why", scenario, "7-9"}).err, "request 7-9: no line asks for its crops\n");
}

}  // namespace
}  // namespace zoomreplay::test
