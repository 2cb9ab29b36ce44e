// When things happen in a trace, what they are worth, and what a range leaves of it. check_trace.py
// holds whole traces against their results.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

using nlohmann::json;

class TraceTest : public ToolTest {
 protected:
    json trace() const { return json::parse(read("t.json")); }

    /// The events of a phase, in the order of the file.
    std::vector<json> events(std::string const& phase) const {
        std::vector<json> found;
        json const whole = trace();
        for (json const& event : whole["traceEvents"]) {
            if (event["ph"] == phase) {
                found.push_back(event);
            }
        }
        return found;
    }

    /// The calls as [line, time, duration].
    json calls() const {
        json found = json::array();
        for (json const& event : events("X")) {
            found.push_back({event["args"]["line"], event["ts"], event["dur"]});
        }
        return found;
    }

    /// The values of a counter as [time, value].
    json counter(std::string const& name) const {
        json found = json::array();
        for (json const& event : events("C")) {
            if (event["name"] == name) {
                found.push_back({event["ts"], event["args"]["value"]});
            }
        }
        return found;
    }
};

// Nanoseconds, of which a line without any takes up a microsecond.
TEST_F(TraceTest, LinesHappenWhenTheySay) {
    outputOf(replay(R"({"op":"isPortExist","sensorId":0,"port":1,"t":5000000}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":1,"t":6002500,"dur":1500}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":1}
{"op":"onRequestDone","requestNo":1,"t":1,"dur":7}
{"op":"onRequestDone","requestNo":2,"t":3600000000000001}
{"op":"onRequestDone","requestNo":3,"t":9223372036854775807,"dur":9223372036854775807}
{"op":"onRequestDone","requestNo":4,"t":0}
)",
                    {"--trace", "t.json"}));

    auto const found = calls();
    EXPECT_EQ(found[0], json({1, 5000.0, 1.0}));
    EXPECT_EQ(found[1], json({2, 6002.5, 1.5}));
    EXPECT_EQ(found[2], json({3, 6004.0, 1.0}));    // follows its predecessor
    EXPECT_EQ(found[3], json({4, 6005.0, 0.007}));  // time does not run backwards
    EXPECT_EQ(found[4], json({5, 3600000000000.001, 1.0}));
    EXPECT_THAT(read("t.json"), testing::HasSubstr(R"("ts": 9223372036854775.807, "dur": 0.000)"));
    EXPECT_EQ(found[6][1], found[5][1]);  // nor beyond the end of it
    EXPECT_EQ(trace()["otherData"]["clock"], "CLOCK_BOOTTIME");
}

// Request 1 is overridden and done in the frame of request 3, where request 2, which asks for less
// than what is published, is still in flight.
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
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"setRunTimeCropNeedData","requestNo":3,"sensorModes":{"0":1}}
{"op":"onRequestDone","requestNo":1}
)";

// Line by line, a millisecond each from the first on: the P1 queries at 6, 8 and 9 ms.
TEST_F(TraceTest, CountersHoldWhatCropsAreWorth) {
    outputOf(replay(std::string(kScenario) + R"({"op":"observed","requestNo":1,"zoomRatio":1.75})",
                    {"--trace", "t.json"}));

    EXPECT_EQ(counter("observed ratio"), json({{12000.0, 1.75}}));
    EXPECT_EQ(counter("asked ratio"), json({{6000.0, 4.0}, {8000.0, 1.5}, {9000.0, 4.0}}));
    EXPECT_EQ(counter("override ratio"), json({{6000.0, 2.0}}));  // until it changes
    // Half of the array, and no crop where the answer is no.
    EXPECT_EQ(counter("sensor 0 P1 R1 width"), json({{6000.0, 1152}, {8000.0, 0}, {9000.0, 1152}}));
    EXPECT_EQ(counter("sensor 0 P1 R1 centre y"), json({{6000.0, 648.0}}));
    auto const angle = counter("sensor 0 P1 R1 angle");
    ASSERT_EQ(angle.size(), 1U);
    EXPECT_NEAR(angle[0][1].get<double>(), 53.1301, 0.001);  // 2 atan(tan(90 / 2) / 2)
    EXPECT_EQ(trace()["otherData"]["clock"], "none: a millisecond a line");
}

// Each configuration takes the place of the one before, which knew the sensor.
TEST_F(TraceTest, AnglesNeedTheLatestConfiguration) {
    outputOf(replay(std::string(kSensor) + R"({"op":"initialize","mode":"InstantRequest"}
{"op":"configSensorInfo","sensorIds":[0],"sensorInfos":{"0":{"degreeH":90,"degreeV":60,"activeArray":[0,0,4608,2592]}}}
{"op":"configSensorInfo","sensorIds":[1],"sensorInfos":{"1":{"degreeH":90,"degreeV":60,"activeArray":[0,0,4608,2592]}}}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1},"streamSizes":{"0x70010000000000":[64,48]}}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":1,"customStreamCrops":[1,0,0,400,300]},"streamIdMap":{"1":"0x70010000000000"}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":2}
)",
                    {"--trace", "t.json"}));

    EXPECT_EQ(counter("sensor 0 P1 R1 width"), json({{6000.0, 200}}));
    EXPECT_EQ(counter("sensor 0 P1 R1 angle"), json::array());
}

// Crops that are alike, but must not get smaller than different streams.
TEST_F(TraceTest, PortsOfDifferentMinimaStandApart) {
    outputOf(replay(std::string(kSensor) + R"({"op":"initialize","mode":"InstantRequest"}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1},"streamSizes":{"0x70010000000000":[64,48],"0x70020000000000":[64,48],"0x70030000000000":[96,48]}}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":1,"customStreamCrops":[1,0,0,400,300,2,0,0,400,300,3,0,0,400,300]},"streamIdMap":{"1":"0x70010000000000","2":"0x70020000000000","3":"0x70030000000000"}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":2}
)",
                    {"--trace", "t.json"}));

    json ports = json::array();
    auto const found = events("X");
    for (json const& crop : found.back()["args"]["crops"]) {
        ports.push_back(crop["ports"]);
    }
    EXPECT_EQ(ports, json({"R1 R2", "R3"}));
}

TEST_F(TraceTest, ArrowsLeadToWhatWasUsed) {
    outputOf(replay(kScenario, {"--trace", "t.json"}));

    json found = json::array();
    auto const starts = events("s");
    auto const ends = events("f");
    ASSERT_EQ(starts.size(), ends.size());
    for (size_t i = 0; i < starts.size(); ++i) {
        found.push_back({starts[i]["ts"], ends[i]["ts"]});
    }
    // Deposit and entry; a refusal and a kept answer used no entry.
    EXPECT_EQ(found,
              json({{5000.0, 6000.0}, {4000.0, 6000.0}, {7000.0, 8000.0}, {5000.0, 9000.0}}));
}

TEST_F(TraceTest, RangeKeepsTheTimesOfTheWholeReplay) {
    outputOf(replay(kScenario, {"--trace", "t.json", "--requests", "2"}));

    EXPECT_EQ(calls(), json({{8, 7000.0, 1000.0}, {9, 8000.0, 1000.0}}));
    auto const begins = events("b");
    ASSERT_EQ(begins.size(), 1U);
    EXPECT_EQ(begins[0]["args"]["request"], 2);
    EXPECT_EQ(events("e")[0]["ts"], 12000.0);  // the end of the replay
    EXPECT_EQ(events("i").size(), 1U);
}

TEST_F(TraceTest, BadLineLeavesWhatCameBefore) {
    auto const run = replay(std::string(kScenario) + "bad\n", {"--trace", "t.json"});

    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(calls().size(), 11U);
    EXPECT_EQ(events("e").size(), 3U);
}

}  // namespace
}  // namespace zoomreplay::test
