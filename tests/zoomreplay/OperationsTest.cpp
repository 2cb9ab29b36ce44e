// Every operation of a scenario: what reaches the library, and the form of its result line.
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

struct Scenario {
    char const* name;
    std::string lines;
    std::string results;
};

void PrintTo(Scenario const& scenario, std::ostream* out) {
    *out << scenario.name;
}

class OperationTest : public ToolTest, public testing::WithParamInterface<Scenario> {};

TEST_P(OperationTest, HasItsResultLines) {
    auto const result = replay(std::string(kSensor) + GetParam().lines);

    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, GetParam().results);
}

Scenario const kWithoutStrategy{"without a strategy",
                                R"({"op":"configFspInfo","fspPorts":{"0":"0x7001"}}
{"op":"configSensorInfo","sensorIds":[0],"sensorInfos":{"0":{"degreeH":66.5,"activeArray":[0,0,8,8]}}}
{"op":"configSensorBehaviorInfo","portSizes":{"0":{"1":[2304,1296]}}}
{"op":"isPortExist","sensorId":0,"port":"0x7001"}
{"op":"isPortExist","sensorId":1,"port":1}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":2,"need":{"overrideValid":true,"requestNo":5,"mode":"ByRequest","tgCrops":{"1":{"0x7001":[1,2,3,4]},"0":{"2":[5,6,7,8]}}}}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":2,"manual":true,"need":{"overrideRect":[1,2,3,4],"previewAaCrops":{"0":[0.5,1,2,"inf"]}}}
{"op":"onRequestDone","requestNo":1}
)",
                                R"({"line": 2, "op": "configFspInfo", "result": true}
{"line": 3, "op": "configSensorInfo", "result": true}
{"line": 4, "op": "configSensorBehaviorInfo", "result": true}
{"line": 5, "op": "isPortExist", "result": true}
{"line": 6, "op": "isPortExist", "result": false}
{"line": 7, "op": "getP1CropSetting", "result": false, "need": {"overrideValid": false, "requestNo": 5, "zoomRatio": 1, "mode": 0, "tgCrops": {"0": {"0x2": [5, 6, 7, 8]}, "1": {"0x7001": [1, 2, 3, 4]}}}}
{"line": 8, "op": "getP2CropSetting", "result": false, "need": {"overrideValid": false, "requestNo": -1, "zoomRatio": 1, "mode": 0, "overrideRect": [1, 2, 3, 4], "streamCrops": {}, "extraTgCrops": {}, "previewAaCrops": {"0": [0.5, 1, 2, "inf"]}, "extraAaCrops": {}}}
{"line": 9, "op": "onRequestDone", "result": true}
)"};

// Times are repeated, those of the platform's lines have no result to stand in.
Scenario const kTimes{
    "times",
    R"({"op":"publish","t":1}
{"op":"getZoomOverrideMode","t":9223372036854775807,"dur":0}
{"op":"getZoomOverrideMode","dur":"12"}
)",
    R"({"line": 3, "t": 9223372036854775807, "dur": 0, "op": "getZoomOverrideMode", "result": 0}
{"line": 4, "dur": 12, "op": "getZoomOverrideMode", "result": 0}
)"};

// The crop is halved; it is larger than the stream, inside the output, and stays.
Scenario const kInstantRequest{"instant request",
                               R"({"op":"initialize","mode":3}
{"op":"getZoomOverrideMode"}
{"op":"setRunTimeCropNeedData","requestNo":4,"sensorModes":{"0":1},"streamSizes":{"0x70010000000000":[640,480]}}
{"op":"setRunTimeCropNeedData","requestNo":5,"notice":"repeating"}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":1.5,"customStreamCrops":[7,100,"100",2000,1500]},"streamIdMap":{"7":"0x70010000000000","8":-2}}
{"op":"getP1CropSetting","requestNo":5,"zoomRatio":2.5,"sensorId":0}
{"op":"getHistoryCropNeedData","requestNo":5}
)",
                               R"({"line": 2, "op": "initialize", "result": true}
{"line": 3, "op": "getZoomOverrideMode", "result": 3}
{"line": 4, "op": "setRunTimeCropNeedData", "result": true}
{"line": 5, "op": "setRunTimeCropNeedData", "result": true}
{"line": 6, "op": "storeOverrideSetting", "result": true}
{"line": 7, "op": "getP1CropSetting", "result": true, "need": {"overrideValid": true, "requestNo": -1, "zoomRatio": 1.5, "mode": 3, "tgCrops": {"0": {"0x7001": [50, 50, 1000, 750]}}}}
{"line": 8, "op": "getHistoryCropNeedData", "record": {"sensorModes": {"0": 1}, "streamSizes": {"0x70010000000000": [640, 480]}, "constraintStreams": {}, "extraTable": {}}}
)"};

// The setting is for a later request and at least as narrow as what the request asks for. The
// sensor without an extra crop gets an empty one.
Scenario const kByRequest{"by request",
                          R"({"op":"initialize","mode":"ByRequest"}
{"op":"setRunTimeCropNeedData","requestNo":15,"sensorModes":{"0":1}}
{"op":"storeOverrideSetting","requestNo":15,"setting":{"overrideValid":true,"requestNo":20,"zoomRatio":2,"overrideRect":[1,2,3,4],"previewAaCrops":{"0":[100.5,100,2000,1500]}}}
{"op":"getP2CropSetting","requestNo":15,"zoomRatio":1.5}
{"op":"storeOverrideSetting","requestNo":12,"notice":"repeating","setting":null}
{"op":"getP2CropSetting","requestNo":15,"zoomRatio":1.5}
)",
                          R"({"line": 2, "op": "initialize", "result": true}
{"line": 3, "op": "setRunTimeCropNeedData", "result": true}
{"line": 4, "op": "storeOverrideSetting", "result": true}
{"line": 5, "op": "getP2CropSetting", "result": true, "need": {"overrideValid": true, "requestNo": 20, "zoomRatio": 2, "mode": 2, "overrideRect": [1, 2, 3, 4], "streamCrops": {"0": [50, 50, 1000, 750]}, "extraTgCrops": {"0": [0, 0, 0, 0]}, "previewAaCrops": {"0": [100.5, 100, 2000, 1500]}, "extraAaCrops": {"0": [0, 0, 0, 0]}}}
{"line": 6, "op": "storeOverrideSetting", "result": true}
{"line": 7, "op": "getP2CropSetting", "result": false, "need": {"overrideValid": true, "requestNo": 12, "zoomRatio": 2, "mode": 2, "overrideRect": [0, 0, 0, 0], "streamCrops": {}, "extraTgCrops": {}, "previewAaCrops": {}, "extraAaCrops": {}}}
)"};

// Without an entry the need stays as it was; then the newest entry shows in it.
Scenario const kPublish{"publish",
                        R"({"op":"initialize","mode":"ExternalAPI"}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"publish","zoomRatio":2,"enable":true}
{"op":"publish","zoomRatio":3,"enable":false}
{"op":"getP1CropSetting","requestNo":2,"zoomRatio":4}
)",
                        R"({"line": 2, "op": "initialize", "result": true}
{"line": 3, "op": "getP1CropSetting", "result": false, "need": {"overrideValid": false, "requestNo": -1, "zoomRatio": 1, "mode": 0, "tgCrops": {}}}
{"line": 6, "op": "getP1CropSetting", "result": false, "need": {"overrideValid": false, "requestNo": -1, "zoomRatio": 3, "mode": 1, "tgCrops": {}}}
)"};

// 3500 + 1000 is beyond 2304: moved to the left. 400x300 grows to 1000x750 about the centre. The
// second sensor's mode has a size without a window.
Scenario const kCorrection{
    "correction",
    R"({"op":"sensor","id":1,"modes":{"2":{"size":[4000,3000]},"3":{"matrix":[1,0,1,0]}}}
{"op":"correctTgCropRegion","sensorId":0,"sensorMode":1,"crop":[3500,0,1000,750]}
{"op":"correctTgCropRegion","sensorId":1,"sensorMode":2,"checkMinSize":true,"minSize":[1000,750],"crop":[10,10,400,300]}
)",
    R"({"line": 3, "op": "correctTgCropRegion", "result": true, "crop": [1304, 0, 1000, 750]}
{"line": 4, "op": "correctTgCropRegion", "result": true, "crop": [1500, 1125, 1000, 750]}
)"};

// Twice the zoom is the middle half of the array.
Scenario const kMapper{
    "mapper",
    R"({"op":"SensorCropMapper.config","sensorIds":[0],"sensorInfos":{"0":{"degreeH":66,"degreeV":41,"activeArray":[0,0,4608,2592]}}}
{"op":"SensorCropMapper.getSensorCrop","enable":true,"zoomRatio":2}
)",
    R"({"line": 2, "op": "SensorCropMapper.config", "result": true}
{"line": 3, "op": "SensorCropMapper.getSensorCrop", "result": true, "output": {"isValid": true, "zoomRatio": 2, "sensorCrops": {"0": [1152, 648, 2304, 1296]}}}
)"};

// The setting names a sensor that the request lacks.
Scenario const kException{"an exception does not end the replay",
                          R"({"op":"initialize","mode":2}
{"op":"setRunTimeCropNeedData","requestNo":1}
{"op":"storeOverrideSetting","requestNo":1,"setting":{"overrideValid":true,"requestNo":9,"zoomRatio":2,"previewAaCrops":{"0":[0,0,8,8]}}}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":1}
{"op":"onRequestDone","requestNo":1}
)",
                          R"({"line": 2, "op": "initialize", "result": true}
{"line": 3, "op": "setRunTimeCropNeedData", "result": true}
{"line": 4, "op": "storeOverrideSetting", "result": true}
{"line": 5, "op": "getP2CropSetting", "exception": "out_of_range", "what": "unordered_map::at: key not found"}
{"line": 6, "op": "onRequestDone", "result": true}
)"};

// The manager reads its properties when it is made, at the first line that calls it.
Scenario const kProperty{
    "property",
    R"({"op":"property","name":"vendor.debug.camera.zoomOverride.closeP2Override","value":"1"}
{"op":"initialize","mode":3}
{"op":"property","name":"vendor.debug.camera.zoomOverride.closeP1Override","value":1}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":1}
)",
    R"({"line": 3, "op": "initialize", "result": true}
{"line": 5, "op": "getP2CropSetting", "result": false, "need": {"overrideValid": false, "requestNo": -1, "zoomRatio": 1, "mode": 0, "overrideRect": [0, 0, 0, 0], "streamCrops": {}, "extraTgCrops": {}, "previewAaCrops": {}, "extraAaCrops": {}}}
)"};

INSTANTIATE_TEST_SUITE_P(All, OperationTest,
                         testing::Values(kWithoutStrategy, kTimes, kInstantRequest, kByRequest,
                                         kPublish, kCorrection, kMapper, kException, kProperty));

class CallLogTest : public ToolTest {};

// Warnings only, by the unified logger only: the crop is moved to the left.
TEST_F(CallLogTest, BelongsToTheCallThatWroteIt) {
    auto const result = replay(std::string(kSensor) +
                                   R"({"op":"logger","mode":2,"detailsLevel":2}
{"op":"getZoomOverrideMode"}
{"op":"correctTgCropRegion","sensorId":0,"sensorMode":1,"crop":[3500,0,1000,750]}
)",
                               {"--log"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out,
              R"({"line": 3, "op": "getZoomOverrideMode", "result": 0, "log": []}
{"line": 4, "op": "correctTgCropRegion", "result": true, "crop": [1304, 0, 1000, 750], "log": [{"sink": "unified", "level": 2, "text": "[ZoomOverrideMgr::correctTgCropRegion] sensorId:0 sensorMode:1 : width out of bound fix to right"}]}
)");
}

TEST_F(CallLogTest, OfTheManagersMakingBelongsToTheFirstManagerLine) {
    auto const result = replay(
        R"({"op":"logger","mode":2,"detailsLevel":5}
{"op":"property","name":"vendor.debug.camera.zoomOverride.log","value":-70000}
{"op":"SensorCropMapper.config"}
{"op":"isPortExist","sensorId":0,"port":1}
{"op":"isPortExist","sensorId":0,"port":1}
)",
        {"--log"});

    EXPECT_THAT(result.out, testing::HasSubstr("create instance - logLevel:-70000\""));
    auto const isPortExist = result.out.find("{\"line\": 4");
    auto const created = result.out.find("[Zoom Override]: create instance +");
    EXPECT_LT(isPortExist, created);
    EXPECT_LT(created, result.out.find("{\"line\": 5"));
    EXPECT_EQ(result.out.find("[Zoom Override]: create instance +", created + 1),
              std::string::npos);
}

TEST_F(CallLogTest, LevelsAreSwitchedOneByOne) {
    std::string const call =
        R"({"op":"correctTgCropRegion","sensorId":0,"sensorMode":1,"crop":[3500,0,1000,750]})"
        "\n";
    auto const result =
        replay(std::string(kSensor) + "{\"op\":\"logger\",\"mode\":1,\"levels\":{\"2\":false}}\n" +
                   call + "{\"op\":\"logger\",\"levels\":{\"2\":true}}\n" + call,
               {"--log"});

    EXPECT_THAT(result.out,
                testing::MatchesRegex(".*\"line\": 3.*\"log\": \\[\\]\\}\n"
                                      ".*\"line\": 5.*\"sink\": \"print\", \"level\": 2, "
                                      "\"text\": \"[^\"]*fix to right\"\\}\\]\\}\n"));
}

// Debug lines belong to two groups, and both must be wanted.
TEST_F(CallLogTest, GroupsOfDebugLinesAreSwitchedByTheMask) {
    auto const logged = [this](char const* mask) {
        auto const result = replay(R"({"op":"logger","normalDetailsMask":)" + std::string(mask) +
                                       "}\n" + R"({"op":"logger","mode":2,"detailsLevel":5})" +
                                       "\n{\"op\":\"logger\"}\n" + std::string(kModeLine) +
                                       R"({"op":"getP2CropSetting","requestNo":1,"zoomRatio":2})",
                                   {"--log"});
        return result.out.find("meta req 1, ratio 2.00") != std::string::npos;
    };
    EXPECT_TRUE(logged(R"("0x1001000")"));
    EXPECT_FALSE(logged(R"("0x1000000")"));
    EXPECT_FALSE(logged(R"("0xFFFFEFFF")"));
}

TEST_F(CallLogTest, OfAFatalLineIsKept) {
    auto const result = replay(kFatalLine, {"--log"});

    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.out,
                testing::MatchesRegex(".*\"fatal\": \".*\", \"log\": \\[\\{\"sink\": \"print\", "
                                      "\"level\": 1, \"text\": \".*\\[Fatal\\] "
                                      "\\[ZoomOverrideMgr::getHistoryCropNeedData\\] req\\(9\\) "
                                      "not exist\"\\}\\]\\}\n"));
}

}  // namespace
}  // namespace zoomreplay::test
