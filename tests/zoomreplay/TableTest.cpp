// The table for people.
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

// Crops of two ports, a pair of sensors in P2, queries without an override.
TEST_F(TableTest, HasARowForEachQuery) {
    auto const result = show(std::string(kSensor) + R"({"op":"initialize","mode":3}
{"op":"setRunTimeCropNeedData","requestNo":12,"sensorModes":{"0":1},"streamSizes":{"0x70010000000000":[64,48],"0x70030000000000":[64,48]}}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":2,"customStreamCrops":[1,120,70,332,210,2,0,0,4608,2592]},"streamIdMap":{"1":"0x70010000000000","2":"0x70030000000000"}}
{"op":"getP1CropSetting","requestNo":12,"zoomRatio":4.004}
{"op":"initialize","mode":0}
{"op":"getP2CropSetting","requestNo":13,"zoomRatio":10,"need":{"zoomRatio":1e30,"streamCrops":{"11":[1,-2,3,4]}}}
{"op":"get3ACropSetting","requestNo":4294967295,"zoomRatio":"nan"}
)");

    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out,
              R"(   line    request  query    asked  override  answer    sensor, port and crop
      5         12  P1        4.00      2.00  override  0 0x7001  (60, 35)/166x105
                12                                      0 0x7003  (0, 0)/2304x1296
      7         13  P2       10.00     1e+30  no       11 crop    (1, -2)/3x4
      8 4294967295  3A         nan      1.00  no
)");
}

TEST_F(TableTest, HasARowForWhatThePhoneObserved) {
    auto const result = show(
        R"({"op":"observed","requestNo":3,"zoomRatio":2.125,"cropRegion":[1,2,4080,3060],"activePhysicalId":"5"}
{"op":"observed","requestNo":4,"activePhysicalId":"\u001b[31m0123456789012345678901234567890"}
)");

    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out,
              R"(   line    request  query    asked  override  answer    sensor, port and crop
      1          3  phone        -      2.13  seen      camera  5
                 3                                      region  (1, 2)/4080x3060
      2          4  phone        -         -  seen      camera  ?[31m0123456789012345678901234
)");
}

TEST_F(TableTest, HasRowsForWhatIsNoRequest) {
    auto const result = show(
        std::string(kSensor) +
        R"({"op":"SensorCropMapper.config","sensorIds":[0],"sensorInfos":{"0":{"degreeH":66,"degreeV":41,"activeArray":[0,0,4608,2592]}}}
{"op":"SensorCropMapper.getSensorCrop","enable":true,"zoomRatio":2}
{"op":"SensorCropMapper.getSensorCrop","zoomRatio":3}
{"op":"correctTgCropRegion","sensorId":0,"sensorMode":1,"crop":[3500,0,1000,750]}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":1,"need":{"extraTgCrops":{"12":[5,6,7,8]}}}
)");

    EXPECT_EQ(result.out,
              R"(   line    request  query    asked  override  answer    sensor, port and crop
      3          -  map       2.00      2.00  override  0 crop    (1152, 648)/2304x1296
      4          -  map       3.00      3.00  no        0 crop    (1536, 864)/1536x864
      5          -  fit          -         -  fitted    0 crop    (1304, 0)/1000x750
      6          1  P2        1.00      1.00  no       12 extra   (5, 6)/7x8
)");
}

std::string const kKeptAndCorrected = std::string(kSensor) + R"({"op":"initialize","mode":3}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1},"streamSizes":{"0x70010000000000":[64,48]}}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":2,"customStreamCrops":[1,-8,0,400,300]},"streamIdMap":{"1":"0x70010000000000"}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"getP1CropSetting","requestNo":2,"zoomRatio":1}
{"op":"getP1CropSetting","requestNo":2,"zoomRatio":9}
{"op":"SensorCropMapper.getSensorCrop","zoomRatio":1}
)";

TEST_F(TableTest, MarksKeptAnswersAndCorrectedCrops) {
    EXPECT_THAT(show(kKeptAndCorrected).out, testing::HasSubstr(
                                                 R"(
      5          1  P1        4.00      2.00  override  0 0x7001  (0, 0)/200x150  corrected
      6          1  P1        4.00      2.00  kept      0 0x7001  (0, 0)/200x150
      7          2  P1        1.00      2.00  no
      8          2  P1        9.00      2.00  kept no
      9          -  map )"));
}

TEST_F(TableTest, IsLimitedToRequests) {
    std::string const observed = R"({"op":"observed","requestNo":2}
{"op":"observed","requestNo":1}
)";
    auto const result = show(kKeptAndCorrected + observed, {"--requests", "2"});
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 4) << result.out;
    EXPECT_THAT(result.out, testing::Not(testing::HasSubstr("0x7001")));

    auto const fatal = show(kKeptAndCorrected + std::string(kFatalLine), {"--requests", "2"});
    EXPECT_EQ(fatal.status, 3);
    EXPECT_THAT(fatal.out, testing::HasSubstr("\n     10  getHistoryCropNeedData: fatal:\n"));

    auto const none = show(kKeptAndCorrected, {"--requests", "0"});
    EXPECT_EQ(none.status, 2);
    EXPECT_EQ(none.err, "--requests: the scenario has no such request\n");
}

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
