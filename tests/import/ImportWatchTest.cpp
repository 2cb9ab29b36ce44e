// import-watch: a scenario out of what an application asked of the camera.
#include <unistd.h>

#include <array>
#include <fstream>
#include <iterator>
#include <sstream>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// The wide sensor 0 is the master: half its angles of view have the tangent 1. Those of sensor 1
// have 1/2 and 1/4, on half as many pixels: both have as many columns for the same view, but sensor
// 1 has twice the rows.
constexpr std::string_view kSensors =
    R"({"op": "sensor", "id": 1, "modes": {"2": {"size": [1000, 750], "window": [0, 0, 2000, 1500]}}}
{"op": "sensor", "id": 0, "modes": {"1": {"size": [2000, 1500], "window": [4, 4, 4000, 3000]}, "0": {"size": [4000, 3000], "matrix": [1, -4, 1, -4]}}}
)";
constexpr std::string_view kConfig =
    R"({"op": "configSensorInfo", "sensorIds": [0, 1], "sensorInfos": {"0": {"degreeH": 90, "degreeV": 90, "activeArray": [4, 4, 4000, 3000]}, "1": {"degreeH": 53.130102, "degreeV": 28.072487, "activeArray": [0, 0, 2000, 1500]}}}
)";
constexpr std::string_view kTwoFrames =
    "f7:0ns: REQ:android.control.zoomRatio: [2.00000000]\n"
    "f9:90ns: REQ:android.control.zoomRatio: [4.00000000]\n";

class ImportWatchTest : public ToolTest {
 protected:
    ImportWatchTest() { write("rig.jsonl", std::string(kSensors) + std::string(kConfig)); }

    ToolRun import(std::string_view log, std::string const& mode = "InstantRequest") const {
        write("zoom.log", log);
        return run({"import-watch", "zoom.log", "--rig", "rig.jsonl", "--mode", mode});
    }

    /// The metadata's zoom and crops in each request of a log.
    std::vector<std::string> overrides(std::string_view log) const {
        std::vector<std::string> found;
        std::string const scenario = outputOf(import(log));
        constexpr std::string_view kName = "\"metadata\": ";
        for (auto begin = scenario.find(kName); begin != std::string::npos;
             begin = scenario.find(kName, begin)) {
            begin += kName.size();
            found.push_back(scenario.substr(begin, scenario.find('}', begin) + 1 - begin));
        }
        return found;
    }

    static std::string expected(std::string const& name) {
        std::ifstream file(std::string(PHONES) + "/expected/" + name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

std::string join(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (auto const part : parts) {
        text += part;
    }
    return text;
}

// 2x leaves (1000, 750)/2000x1500 of the master, 4x (1500, 1125)/1000x750; its array begins at
// (4, 4). Sensor 1 sees 2000x3000 around its centre, which is more than it has, and 1000x1500. In
// InstantRequest and ExternalAPI mode a request's override is what the frame before asked, in
// ByRequest mode what the next one asks; the last one has its own.
TEST_F(ImportWatchTest, BecomesTheCallsOfEachMode) {
    for (std::string const mode : {"InstantRequest", "ByRequest", "ExternalAPI"}) {
        auto const scenario = outputOf(import(kTwoFrames, mode));
        EXPECT_EQ(scenario, expected("two-frames-" + mode + ".jsonl"));

        // 2x against 4x: (1000, 750)/2000x1500 in the master's mode, which has scale 1 and begins
        // with the array; half of 2000x1500 in the other's. ByRequest has 4x, on the other sensor
        // half of (500, 0)/1000x1500.
        auto const results = replay(scenario);
        EXPECT_EQ(results.status, 0) << results.err;
        char const* const crops =
            mode == "ByRequest"
                ? R"("streamCrops": {"0": [1500, 1125, 1000, 750], "1": [250, 0, 500, 750]})"
                : R"("tgCrops": {"0": {"0x7001": [1000, 750, 2000, 1500]}, "1": {"0x7001": [0, 0, 1000, 750]}})";
        EXPECT_THAT(results.out, HasSubstr(mode == "ExternalAPI" ? "" : crops));
    }
}

// Its configuration, the last one of each sensor, the streams of sensor 0 in the mode that they are
// told for: without a size it gets a quarter of the configured mode's. Sensor 1 does not stream.
TEST_F(ImportWatchTest, RigsOwnLinesStay) {
    constexpr std::string_view kBefore =
        R"({"op": "logger", "detailsLevel": 5}
{"op": "property", "name": "vendor.some.property", "value": 1}
{"op": "sensor", "id": 1, "modes": {"1": {"size": [8, 6], "window": [0, 0, 8, 6]}}}
)";
    constexpr std::string_view kPorts =
        R"({"op": "configSensorBehaviorInfo", "portSizes": {"0": {"3": [4000, 3000]}}}
{"op": "configFspInfo", "fspPorts": {"0": "0x7003"}}
)";
    constexpr std::string_view kStreams =
        R"({"op": "setRunTimeCropNeedData", "requestNo": 0, "sensorModes": {"0": 1}, "streamSizes": {}}
)";
    write("rig.jsonl", join({kBefore, kSensors, kStreams, kConfig, kPorts}));
    auto const scenario = outputOf(import(kTwoFrames, "ExternalAPI"));

    EXPECT_THAT(scenario, HasSubstr(join({kBefore, kSensors,
                                          R"({"op": "initialize", "mode": "ExternalAPI"}
)",
                                          kConfig, kPorts, "// Frame 7\n"})));
    EXPECT_THAT(
        scenario,
        AllOf(
            HasSubstr(
                R"("requestNo": 1, "sensorModes": {"0": 1, "1": 4294967295}, "streamSizes": {"0x70010000000000": [1000, 750]}})"),
            Not(HasSubstr("stands in"))));

    // The stand-in is of the mode that the last definition gives.
    write("rig.jsonl", join({kBefore, kSensors, kConfig}));
    EXPECT_THAT(
        outputOf(import(kTwoFrames)),
        HasSubstr(
            R"("sensorModes": {"0": 0, "1": 2}, "streamSizes": {"0x70010000000000": [1000, 750], "0x70010100000000": [250, 187]}})"));
}

// Frame 3 crops inside the 4x that hold on. On the master (0, 0)/400x300 shrinks to 100x75 from
// (1500, 1125) on, on sensor 1 to twice the rows from (500, 0) on. Frame 4 goes back to 1x: sensor
// 1's view begins 1000 to the right and 1125 below the master's, so that it sees none of the
// region. In frame 5 it does: the region's 1000 columns less 500 that are outside, 1000 rows less
// 625, twice.
TEST_F(ImportWatchTest, CropRegionLiesInsideTheZoomAndBothHold) {
    auto const found = overrides(
        "\xEF\xBB\xBF"
        "f2:0ns: REQ:android.control.zoomRatio: [4.00000000]\r\n"
        "f3:0ns: REQ:android.scaler.cropRegion: [0 0 400 300 ]\r\n"
        "f4:0ns: REQ:android.control.zoomRatio: [1.00000000]\r\n"
        "f5:0ns: REQ:android.scaler.cropRegion: [500 500 1000 1000 ]\r\n"
        "f6:0ns: REQ:android.scaler.cropRegion: [0 0 4000 3000 ]\r\n");

    constexpr char const* kWhole4x =
        R"({"zoomRatio": 4, "customStreamCrops": [0, 1504, 1129, 1000, 750, 1, 500, 0, 1000, 1500]})";
    EXPECT_THAT(
        found,
        testing::ElementsAre(
            kWhole4x, kWhole4x,
            R"({"zoomRatio": 4, "customStreamCrops": [0, 1504, 1129, 100, 75, 1, 500, 0, 100, 150]})",
            R"({"zoomRatio": 1, "customStreamCrops": [0, 4, 4, 400, 300]})",
            R"({"zoomRatio": 1, "customStreamCrops": [0, 504, 504, 1000, 1000, 1, 0, 0, 500, 750]})"));
}

TEST_F(ImportWatchTest, CropRegionAloneZoomsAndIsTheCrop) {
    EXPECT_THAT(outputOf(import("f1:0ns: REQ:android.scaler.cropRegion: [1000 750 2000 1500 ]\n")),
                HasSubstr(
                    R"(// Frame 1, zoomed by its crop region
{"op": "storeOverrideSetting", "metadata": {"zoomRatio": 2, "customStreamCrops": [0, 1004, 754, 2000, 1500, 1, 0, 0, 2000, 1500]}, )"));
}

struct Log {
    char const* name;
    std::string_view text;
    char const* asked;  ///< zoom ratio of each request
    char const* error;
};

void PrintTo(Log const& log, std::ostream* out) {
    *out << log.name;
}

class WatchLogTest : public ImportWatchTest, public testing::WithParamInterface<Log> {};

TEST_P(WatchLogTest, GivesOneRequestForEachLoggedFrame) {
    auto const result = import(GetParam().text);
    std::string asked;
    constexpr std::string_view kQuery = "getP1CropSetting";
    constexpr std::string_view kRatio = "\"zoomRatio\": ";
    for (auto at = result.out.find(kQuery); at != std::string::npos;
         at = result.out.find(kQuery, at + 1)) {
        auto const begin = result.out.find(kRatio, at) + kRatio.size();
        asked += result.out.substr(begin, result.out.find(',', begin) - begin) + ' ';
    }

    EXPECT_EQ(asked, GetParam().asked);
    EXPECT_EQ(result.err, GetParam().error);
    EXPECT_EQ(result.status, asked.empty() ? 2 : 0);
}

Log const kLogs[] = {
    {"nothing", "", "", "zoom.log: is empty: did the command run, with a phone connected?\n"},
    {"no camera open", "Watching...\n", "",
     "zoom.log: has no frame with a zoom ratio or a crop region\n"},
    {"crop region alone: the lesser magnification of 4000x3000, at least 1",
     "f1:0ns: REQ:android.scaler.cropRegion: [1000 750 2000 1500 ]\n"
     "f2:0ns: REQ:android.scaler.cropRegion: [1500 1125 1000 1000 ]\n"
     "f3:0ns: REQ:android.scaler.cropRegion: [0 375 4000 2250 ]\n",
     "2 3 1 ", ""},
    {"crop region with a ratio that stays 1, and within one that does not",
     "f1:0ns: REQ:android.control.zoomRatio: [1.00000000]\n"
     "f1:0ns: REQ:android.scaler.cropRegion: [1000 750 2000 1500 ]\n"
     "f2:0ns: REQ:android.control.zoomRatio: [3.00000000]\n"
     "f3:0ns: REQ:android.control.zoomRatio: [1.00000000]\n",
     "2 3 1 ", ""},
    {"values removed: 1, the whole array",
     "f1:0ns: REQ:android.control.zoomRatio: [3.00000000]\n"
     "f2:0ns: REQ:android.control.zoomRatio:  (Removed)\n"
     "f3:0ns: REQ:android.scaler.cropRegion: [0 0 40 30 ]\n"
     "f4:0ns: REQ:android.scaler.cropRegion:  (Removed)\n",
     "3 1 100 1 ", ""},
    {"application, streams behind the value, CRLF, quoted, out of logcat",
     "0:org.lens  f0:123ns:  REQ:android.control.zoomRatio: [0.60000000] output stream ids:  0  "
     "1\r\n"
     "> 0:org.lens  f1:123ns:  REQ:android.control.zoomRatio: [0.70000000] output stream ids:  0\n"
     "11-21 12:00:00.000  1234  5678 W dump: 0:org.lens f2:1ns: REQ:android.control.zoomRatio: "
     "[0.8]\n"
     "11-21 12:00:00.000 V/dump( 1234): 0:org.lens f3:1ns: REQ:android.control.zoomRatio: "
     "[0.90000000]\n",
     "0.6 0.7 0.8 0.9 ", ""},
    {"region outside the array",
     "f1:0ns: REQ:android.scaler.cropRegion: [0 0 4000 3000 ]\n"
     "f2:0ns: REQ:android.scaler.cropRegion: [2001 0 2000 3000 ]\n"
     "f3:0ns: REQ:android.scaler.cropRegion: [0 1 4000 3000 ]\n"
     "f4:0ns: REQ:android.scaler.cropRegion: [-1 0 4000 3000 ]\n"
     "f5:0ns: REQ:android.scaler.cropRegion: [0 -1 4000 3000 ]\n",
     "1 1 1 1 1 ",
     "zoom.log: crop regions outside the master's array of 4000x3000: 4, first in frame 2; is the "
     "rig of another camera or phone?\n"},
    {"headings, results, other tags and prefixes",
     "Watching 2 tags\n\n"
     "f1:0ns: REQ:android.control.aeMode: [ON ]\n"
     "f1:5ns: RES:android.control.zoomRatio: [3.00000000]\n"
     "0:some.app:f1:0ns: REQ:android.control.zoomRatio: [1.50000000]\n",
     "1.5 ", ""},
    {"newest first",
     "f9:0ns: REQ:android.control.zoomRatio: [3.00000000]\n"
     "f8:0ns: REQ:android.scaler.cropRegion: [0 0 40 30 ]\n"
     "f7:0ns: REQ:android.control.zoomRatio: [2.00000000]\n",
     "2 2 3 ", ""},
    {"settings of one physical camera, which are not the zoom",
     "f7:0ns: REQ:android.control.zoomRatio: [2.00000000]\n"
     "f8:0ns: 5 REQ:android.control.zoomRatio: [3.00000000]\n",
     "2 ", ""},
    {"camera opened twice",
     "f8:0ns: REQ:android.control.zoomRatio: [2.00000000]\n"
     "f9:0ns: REQ:android.control.zoomRatio: [3.00000000]\n"
     "f0:0ns: REQ:android.control.zoomRatio: [4.00000000]\n"
     "f1:0ns: REQ:android.control.zoomRatio: [5.00000000]\n",
     "2 3 4 5 ", ""},
    {"values that make no sense",
     "f1:0ns: REQ:android.control.zoomRatio: [2.00000000]\n"
     "f2:0ns: REQ:android.control.zoomRatio: [1.000000002.00000000]\n"
     "f3:0ns: REQ:android.control.zoomRatio: [0.00000000]\n"
     "f4:0ns: REQ:android.control.zoomRatio: [nan]\n"
     "f5:0ns: REQ:android.control.zoomRatio:\n"
     "f6:0ns: REQ:android.scaler.cropRegion: [0 0 0 30 ]\n"
     "f6:0ns: REQ:android.scaler.cropRegion: [0 0 40 0 ]\n"
     "f6:0ns: REQ:android.scaler.cropRegion: [0 0 40 ]\n"
     "f6:0ns: REQ:android.scaler.cropRegion: [0 0 40 30 50 ]\n"
     "f99999999999999999999:0ns: REQ:android.control.zoomRatio: [9.00000000]\n"
     "f8:0ns: REQ:android.control.zoomRatio: [3.00000000]\n",
     "2 3 ",
     "zoom.log:2: android.control.zoomRatio: [1.000000002.00000000] is not one positive number; "
     "lines left out in all: 8\n"},
    {"one value that makes no sense, the first of the answers",
     "f1:0ns: REQ:android.control.zoomRatio: [2.00000000]\n"
     "f1:9ns: RES:android.logicalMultiCamera.activePhysicalId: [50 0 51 0 ]\n",
     "2 ",
     "zoom.log:2: android.logicalMultiCamera.activePhysicalId: [50 0 51 0 ] is not the id of one "
     "camera; lines left out in all: 1\n"},
};
INSTANTIATE_TEST_SUITE_P(All, WatchLogTest, testing::ValuesIn(kLogs));

struct BadRig {
    std::string rig;
    char const* message;
};

void PrintTo(BadRig const& rig, std::ostream* out) {
    *out << rig.message;
}

class BadRigTest : public ImportWatchTest, public testing::WithParamInterface<BadRig> {};

TEST_P(BadRigTest, IsTold) {
    write("rig.jsonl", GetParam().rig);
    auto const result = import(kTwoFrames);

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "rig.jsonl:" + std::string(GetParam().message) + "\n");
}

std::string sensor(std::string const& mode) {
    return R"({"op":"sensor","id":0,"modes":{"0":)" + mode + "}}\n" + std::string(kConfig);
}

std::string config(std::string const& id, std::string const& info) {
    return std::string(kSensors) + R"({"op":"configSensorInfo","sensorIds":[)" + id +
           R"(],"sensorInfos":{)" + info + "}}\n";
}

BadRig const kBadRigs[] = {
    {"{", "1: column 2: unexpected end of line; expected a name in double quotes"},
    {"{\"op\": \"initialize\", \"mode\": 1}", "1: initialize: does not belong into a rig"},
    {R"({"op":"sensor","id":0})", "1: modes: missing"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":0,"streamSizes":{}})",
     "1: sensorModes: missing"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":0,"sensorModes":{}})",
     "1: streamSizes: missing"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":0,"sensorModes":{},"streamSizes":{},"t":1})",
     "1: t: unknown field"},
    {R"({"op":"configSensorInfo","sensors":[0]})",
     "1: sensors: unknown field; did you mean sensorIds?"},
    {sensor(R"({"size":[4,3]})"), "1: modes.0: has neither a window nor a matrix"},
    {sensor(R"({"size":[4,3],"window":[0,0,4,3],"windows":[]})"),
     "1: modes.0.windows: unknown field; did you mean window?"},
    {sensor(R"({"size":[4,0],"window":[0,0,4,3]})"), "1: modes.0: size: must be an area"},
    {std::string(kSensors), " no configSensorInfo line names a sensor"},
    {config("", ""), " no configSensorInfo line names a sensor"},
    {std::string(kConfig), " sensor 0: is configured, but no sensor line gives it a mode"},
    {config("256", ""), " sensor 256: its id has no room in a stream id, which has 0 to 255"},
    {config("0", ""), " sensor 0: has no entry in sensorInfos"},
    {config("0", R"("0":{"degreeH":60,"activeArray":[0,0,4,3]})"),
     " sensor 0: degreeH and degreeV must be between 0 and 180"},
    {config("0", R"("0":{"degreeH":60,"degreeV":40,"activeArray":[0,0,4,0]})"),
     " sensor 0: activeArray must be an area with an origin that is not negative"},
};
INSTANTIATE_TEST_SUITE_P(All, BadRigTest, testing::ValuesIn(kBadRigs));

TEST_F(ImportWatchTest, BadUsageHasStatusTwo) {
    EXPECT_EQ(run({"import-watch", "-", "--rig", "-", "--mode", "ByRequest"}).err,
              "<stdin>: cannot be both LOG and RIG\n");
    EXPECT_THAT(import(kTwoFrames, "None").err, HasSubstr("--mode: None not in"));
    EXPECT_THAT(run({"import-watch", "zoom.log", "--mode", "ByRequest"}).err,
                HasSubstr("--rig is required"));
    EXPECT_EQ(run({"import-watch", "zoom.log", "--rig", "rig.jsonl", "--mode", "ByRequest", "-o",
                   "./rig.jsonl"})
                  .status,
              2);
}

// Frame 8's answer comes when frame 9 has been asked for; frame 10 was not logged when asked for.
// What a session before has told holds on, until it is removed.
TEST_F(ImportWatchTest, AnswersOfThePhoneGoWithTheirRequests) {
    constexpr std::string_view kLog =
        "f7:0ns: RES:android.control.zoomRatio: [1.00000000]\n"
        "f8:0ns: REQ:android.control.zoomRatio: [2.00000000]\n"
        "f9:0ns: REQ:android.control.zoomRatio: [4.00000000]\n"
        "f8:1234000ns: RES:android.control.zoomRatio: [1.90000000]\n"
        "f8:1234000ns: RES:android.logicalMultiCamera.activePhysicalId: [50 48 0 ]\n"
        "f9:0ns: 5 RES:android.scaler.cropRegion: [0 0 1 1 ]\n"
        "f10:0ns: RES:android.logicalMultiCamera.activePhysicalId: [5 1 ]\n"
        "f10:0ns: RES:android.scaler.cropRegion: [0 0 4000 3000 ]\n"
        "f20:0ns: REQ:android.control.zoomRatio: [5.00000000]\n"
        "f21:0ns: REQ:android.control.zoomRatio: [6.00000000]\n"
        "f22:0ns: REQ:android.control.zoomRatio: [7.00000000]\n"
        "f20:0ns: RES:android.control.zoomRatio: [4.50000000]\n"
        "f21:7ns: RES:android.logicalMultiCamera.activePhysicalId: (Removed)\n"
        "f2:0ns: REQ:android.control.zoomRatio: [8.00000000]\n"
        "f21:0ns: RES:android.control.zoomRatio: [9.00000000]\n"
        "f1:0ns: RES:android.control.zoomRatio: [9.00000000]\n"
        "f2:0ns: RES:android.control.zoomRatio:  (Removed)\n"
        "f2:0ns: RES:android.scaler.cropRegion:  (Removed)\n";
    constexpr std::string_view kAnswers =
        R"({"op": "observed", "requestNo": 1, "zoomRatio": 1.9, "activePhysicalId": "20", "t": 1234000}
{"op": "observed", "requestNo": 2, "zoomRatio": 1.9, "cropRegion": [0, 0, 4000, 3000], "activePhysicalId": "51"}
{"op": "observed", "requestNo": 3, "zoomRatio": 4.5, "cropRegion": [0, 0, 4000, 3000], "activePhysicalId": "51"}
{"op": "observed", "requestNo": 4, "zoomRatio": 4.5, "cropRegion": [0, 0, 4000, 3000], "t": 7}
{"op": "observed", "requestNo": 6, "zoomRatio": 9, "cropRegion": [0, 0, 4000, 3000]}
)";
    for (char const* mode : {"ExternalAPI", "ByRequest", "InstantRequest"}) {
        auto const scenario = outputOf(import(kLog, mode));
        std::istringstream lines(scenario);
        std::string answers;
        for (std::string line; std::getline(lines, line);) {
            answers += line.find("\"observed\"") == std::string::npos ? "" : line + '\n';
        }
        EXPECT_EQ(answers, kAnswers) << mode;
        EXPECT_LT(scenario.find(R"({"op": "onRequestDone", "requestNo": 2})"),
                  scenario.find(R"({"op": "observed", "requestNo": 2)"))
            << mode;
        EXPECT_EQ(replay(scenario).status, 0) << mode;
    }
}

// Two applications have opened camera 0, one after the other, and one camera 1.
TEST_F(ImportWatchTest, OneCameraIsChosen) {
    constexpr std::string_view kLog =
        "0:app  f1:0ns: REQ:android.control.zoomRatio: [2.00000000]\n"
        "1:app  f1:0ns: REQ:android.control.zoomRatio: [7.00000000]\n"
        "1:app  f2:0ns: REQ:android.control.zoomRatio: [8.00000000]\n"
        "0:app  f2:0ns: REQ:android.control.zoomRatio: [3.00000000]\n"
        "0:other:f1:0ns: REQ:android.control.zoomRatio: [4.00000000]\n";
    auto const choose = [&](std::vector<std::string> const& options) {
        write("zoom.log", kLog);
        std::vector<std::string> arguments{"import-watch", "zoom.log", "--rig",
                                           "rig.jsonl",    "--mode",   "ExternalAPI"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments);
    };
    write("old.jsonl", "old");

    EXPECT_EQ(
        choose({"-o", "old.jsonl"}).err,
        "zoom.log: has several cameras or applications: 0:app (2 frames), 0:other (1 frames), "
        "1:app (2 frames); choose one with --camera\n");
    EXPECT_EQ(read("old.jsonl"), "old");
    EXPECT_EQ(
        choose({"--camera", "0"}).err,
        "zoom.log: has several cameras or applications: 0:app (2 frames), 0:other (1 frames); "
        "choose one with --camera\n");
    EXPECT_EQ(choose({"--camera", "2"}).err,
              "zoom.log: has no frames of camera 2, only of 0:app (2 frames), 0:other (1 frames), "
              "1:app (2 frames)\n");
    EXPECT_THAT(choose({"--camera", "1"}).out,
                AllOf(HasSubstr(R"("zoomRatio": 8)"), Not(HasSubstr(R"("zoomRatio": 2)"))));
    EXPECT_THAT(choose({"--camera", "0:app"}).out,
                AllOf(HasSubstr(R"("zoomRatio": 3)"), Not(HasSubstr(R"("zoomRatio": 4)"))));
}

// The first stream is bound to sensor 0, stream 2 to sensor 1: its crops are for that one.
TEST_F(ImportWatchTest, OpenSessionTellsTheStreams) {
    constexpr std::string_view kOpenCamera =
        "== Camera device 0 dynamic info: ==\n"
        "  Device 0 is open. Client instance dump:\n"
        "    Stream[0]: Output\n"
        "      Dims: 640 x 480, format 0x22, dataspace 0x0\n"
        "      Physical Camera id: 0\n"
        "    Stream[1]: Input\n"
        "      Dims: 1 x 1, format 0x22, dataspace 0x0\n"
        "    Stream[2]: Output\n"
        "      Dims: 800 x 600, format 0x22, dataspace 0x0\n"
        "      Physical camera id: 1\n"
        "    Stream[3]: Output\n"
        "      Dims: 0 x 600, format 0x22, dataspace 0x0\n"
        "== Camera device 9 dynamic info: ==\n"
        "  Device 9 is closed, no client instance\n";
    write("open.txt", kOpenCamera);
    write("zoom.log", kTwoFrames);
    auto const session = [&](std::string const& dump) {
        return run({"import-watch", "zoom.log", "--rig", "rig.jsonl", "--mode", "InstantRequest",
                    "--session", dump});
    };

    auto const scenario = session("open.txt");
    EXPECT_EQ(scenario.err, "");
    EXPECT_THAT(
        scenario.out,
        AllOf(
            HasSubstr(
                R"("sensorModes": {"0": 0, "1": 2}, "streamSizes": {"0x70010000000000": [640, 480], "0x70010100000002": [800, 600]}})"),
            HasSubstr(R"("streamIdMap": {"0": "0x70010000000000", "1": "0x70010100000002"})"),
            Not(HasSubstr("stands in"))));
    EXPECT_EQ(replay(scenario.out).status, 0);
    EXPECT_EQ(
        session("zoom.log").err,
        "zoom.log: has no open camera with streams; take it while the camera application is in "
        "use\n");

    write("open.txt", std::string(kOpenCamera) +
                          "  Device 9 is open. Client instance dump:\n"
                          "    Stream[0]: Output\n"
                          "      Dims: 640 x 480, format 0x22, dataspace 0x0\n");
    EXPECT_EQ(session("open.txt").err,
              "open.txt: has streams of open cameras 0, 9; choose one with --camera\n");
    write("zoom.log", "0:app f7:0ns: REQ:android.control.zoomRatio: [2.00000000]\n");
    outputOf(run({"import-watch", "zoom.log", "--rig", "rig.jsonl", "--mode", "ByRequest",
                  "--session", "open.txt", "--camera", "0:app"}));
    EXPECT_EQ(run({"import-watch", "zoom.log", "--rig", "rig.jsonl", "--mode", "ByRequest",
                   "--session", "open.txt", "--camera", "0", "-o", "open.txt"})
                  .err,
              "open.txt: is also read from; results need a file of their own\n");

    // Printed twice, as in a bugreport.
    write("open.txt", std::string(kOpenCamera) + std::string(kOpenCamera));
    write("zoom.log", kTwoFrames);
    EXPECT_EQ(outputOf(session("open.txt")), scenario.out);
}

TEST_F(ImportWatchTest, FirstFrameHasAnAnswer) {
    EXPECT_THAT(outputOf(import("f0:0ns: REQ:android.control.zoomRatio: [2.00000000]\n"
                                "f0:0ns: RES:android.control.zoomRatio: [1.90000000]\n")),
                HasSubstr(R"({"op": "observed", "requestNo": 1, "zoomRatio": 1.9})"));
}

// From a pipe, lines are written as they come. What shows up too late is told.
TEST_F(ImportWatchTest, PipeIsImportedAsItComes) {
    auto const pipe = [&](std::string_view log) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        EXPECT_EQ(::write(ends[1], log.data(), log.size()), static_cast<ssize_t>(log.size()));
        close(ends[1]);
        auto result = run({"import-watch", "/proc/self/fd/" + std::to_string(ends[0]), "--rig",
                           "rig.jsonl", "--mode", "ExternalAPI"});
        close(ends[0]);
        return result;
    };
    EXPECT_EQ(outputOf(pipe(kTwoFrames)), outputOf(import(kTwoFrames, "ExternalAPI")));

    auto const newestFirst = pipe(
        "f9:90ns: REQ:android.control.zoomRatio: [4.00000000]\n"
        "f7:0ns: REQ:android.control.zoomRatio: [2.00000000]\n");
    EXPECT_EQ(newestFirst.out, outputOf(import(kTwoFrames, "ExternalAPI")));
    EXPECT_THAT(newestFirst.err, HasSubstr("is newest first, and so was written only at its end"));

    auto const secondCamera = pipe(join({"0:app ", kTwoFrames.substr(0, kTwoFrames.find('\n') + 1),
                                         "0:app ", kTwoFrames.substr(kTwoFrames.find('\n') + 1),
                                         "1:app f1:0ns: REQ:android.control.zoomRatio: [3.0]\n",
                                         "1:app f2:0ns: REQ:android.control.zoomRatio: [4.0]\n"}));
    EXPECT_EQ(secondCamera.status, 2);
    EXPECT_THAT(secondCamera.err, HasSubstr("0:app (2 frames), 1:app (1 frames)"));
    EXPECT_THAT(secondCamera.out, AllOf(HasSubstr("// Frame 7\n"), Not(HasSubstr("// Frame 1\n"))));
}

// On the phone with three cameras, 4x asked with 2x published. Main: half of 4080x3060. Wide: the
// tangents of half the angles are 5.712 / 4.4 = 1.29818 and 9.792 / 13 = 0.75323, ratio 1.72349;
// 4000 / 1.72349 / 2 = 1160.4; 4.284 / 4.4 = 0.97364 and 7.344 / 13 = 0.56492, ratio 1.72349;
// 3000 / 1.72349 / 2 = 870.3. The array begins at 8, the mode with it: (4000 - 1160) / 2 = 1420,
// (3000 - 870) / 2 = 1065. The tele does not stream.
TEST_F(ImportWatchTest, ImportedAnglesGiveTheCrops) {
    ASSERT_EQ(run({"import-rig", std::string(PHONES) + "/triple.txt", "-o", "rig.jsonl"}).status,
              0);
    auto const results = replay(outputOf(import(kTwoFrames, "ExternalAPI")));

    EXPECT_THAT(
        results.out,
        HasSubstr(
            R"("tgCrops": {"2": {"0x7001": [1420, 1065, 1160, 870], "0x7002": [1420, 1065, 1160, 870]}, "5": {"0x7001": [1020, 765, 2040, 1530], "0x7002": [1020, 765, 2040, 1530]}})"));
}

}  // namespace
}  // namespace zoomreplay::test
