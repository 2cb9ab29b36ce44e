// What a trace event file carries.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

using nlohmann::json;

class TraceTest : public ToolTest {
 protected:
    /// The events of a phase, in the order of the file.
    std::vector<json> events(std::string const& phase) const {
        auto const trace = json::parse(read("t.json"));
        std::vector<json> found;
        for (json const& event : trace["traceEvents"]) {
            if (event["ph"] == phase) {
                found.push_back(event);
            }
        }
        return found;
    }

    /// The events of a counter as [time, arguments].
    json counter(std::string const& name) const {
        json found = json::array();
        for (json const& event : events("C")) {
            if (event["name"] == name) {
                found.push_back({event["ts"], event["args"]});
            }
        }
        return found;
    }
};

// Request 1 is overridden and done in the frame of request 3; request 2 asks for less than what is
// published and is never done.
constexpr std::string_view kScenario =
    R"({"op":"sensor","id":0,"modes":{"1":{"size":[2304,1296],"window":[0,0,4608,2592]}}}
{"op":"initialize","mode":"ExternalAPI"}
{"op":"configSensorInfo","sensorIds":[0],"sensorInfos":{"0":{"degreeH":90,"degreeV":60,"activeArray":[0,0,4608,2592]}}}
{"op":"configSensorBehaviorInfo","portSizes":{"0":{"1":[2304,1296]}}}
{"op":"publish","enable":true,"zoomRatio":2}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"setRunTimeCropNeedData","requestNo":2,"sensorModes":{"0":1}}
{"op":"getP1CropSetting","requestNo":2,"zoomRatio":1.5}
{"op":"setRunTimeCropNeedData","requestNo":3,"sensorModes":{"0":1}}
{"op":"onRequestDone","requestNo":1}
)";

TEST_F(TraceTest, RequestsOverlapAtThirtyASecond) {
    replay(kScenario, {"--trace", "t.json"});

    auto const begins = events("b");
    auto const ends = events("e");
    ASSERT_EQ(begins.size(), 3U);
    ASSERT_EQ(ends.size(), 3U);
    EXPECT_EQ(begins[0]["ts"], 0);
    EXPECT_EQ(begins[1]["ts"], 33333);
    EXPECT_EQ(begins[2]["ts"], 66666);
    EXPECT_EQ(ends[0]["id"], begins[0]["id"]);
    EXPECT_EQ(ends[0]["ts"], 66766);  // a line after the deposit of request 3
    EXPECT_EQ(ends[0]["args"]["done"], true);
    EXPECT_EQ(ends[1]["args"]["done"], false);
    EXPECT_EQ(json::parse(read("t.json"))["otherData"]["requestsPerSecond"], 30);
}

TEST_F(TraceTest, CountersTellRatiosAndCropSizes) {
    replay(kScenario, {"--trace", "t.json"});

    EXPECT_EQ(counter("P1 ratio"), json({{100, {{"asked", 4.0}, {"override", 2.0}}},
                                         {33433, {{"asked", 1.5}, {"override", 2.0}}}}));
    // A crop that is gone has no size.
    EXPECT_EQ(counter("sensor 0 P1 0x7001"), json({{100, {{"width", 1152}, {"height", 648}}},
                                                   {33433, {{"width", 0}, {"height", 0}}}}));
}

TEST_F(TraceTest, RefusalsAndTheFatalConditionAreInstants) {
    auto const run = replay(std::string(kScenario) +
                                R"({"op":"get3ACropSetting","requestNo":3,"zoomRatio":"nan"})"
                                "\n",
                            {"--trace", "t.json"});

    EXPECT_EQ(run.status, 3);
    auto const instants = events("i");
    ASSERT_EQ(instants.size(), 2U);
    EXPECT_EQ(instants[0]["name"], "P1 refused");
    EXPECT_EQ(instants[0]["args"], json({{"request", 2}, {"line", 9}}));
    EXPECT_EQ(instants[1]["name"], "fatal: get3ACropSetting");
    EXPECT_EQ(instants[1]["args"]["line"], 12);
}

TEST_F(TraceTest, KeepsTheTimesOfTheWholeReplayInARange) {
    replay(kScenario, {"--trace", "t.json", "--requests", "2"});

    auto const begins = events("b");
    ASSERT_EQ(begins.size(), 1U);
    EXPECT_EQ(begins[0]["name"], "request 2");
    EXPECT_EQ(begins[0]["ts"], 33333);
}

}  // namespace
}  // namespace zoomreplay::test
