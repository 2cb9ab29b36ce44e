// When things happen in a trace. Whole traces are in tests/zoomreplay/views, and check_trace.py
// holds more of them against their results.
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

TEST_F(TraceTest, BadLineLeavesWhatCameBefore) {
    auto const run = replay(std::string(kScenario) + "bad\n", {"--trace", "t.json"});

    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(calls().size(), 11U);
    EXPECT_EQ(events("e").size(), 3U);
}

}  // namespace
}  // namespace zoomreplay::test
