// Bad lines: each gets one message that tells the place, and status 2.
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

struct BadLine {
    char const* line;
    char const* message;  // behind "s.jsonl:3: "
};

void PrintTo(BadLine const& badLine, std::ostream* out) {
    *out << badLine.line;
}

class BadLineTest : public ToolTest, public testing::WithParamInterface<BadLine> {};

TEST_P(BadLineTest, IsToldWithItsPlace) {
    std::string const before = std::string(kModeLine) + "// a comment\n";
    auto const result = replay(before + GetParam().line + "\n" + std::string(kModeLine));

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, std::string("s.jsonl:3: ") + GetParam().message + "\n");
    EXPECT_EQ(result.out, kModeResult);
}

constexpr BadLine kSyntax[] = {
    {R"([1])", "must be a JSON object in one line, or a comment that begins with //"},
    {"\xEF\xBB\xBF{}", "begins with a byte order mark; save the file as UTF-8 without one"},
    {R"({"op")", "column 6: unexpected end of line; expected ':'"},
    {R"({"op":"getZoomOverrideMode"} // x)", "column 30: unexpected '/'; expected end of line"},
    {R"({"op":"getZoomOverrideMode"},)", "column 29: unexpected ','; expected end of line"},
    {R"({"op":"initialize",})", "column 20: unexpected '}'; expected a name in double quotes"},
    {"{\u201C\u201Cop\u201D:1}", "column 2: unexpected '\u201C'; expected a name in double quotes"},
    {R"({"op" "initialize")", "column 18: unexpected string literal; expected ':'"},
    {R"({"op":"initialize" "mode":3})",
     "column 25: unexpected string literal; expected ',' or '}'"},
    {R"({"crop":[1 2]})", "column 12: unexpected number literal; expected ',' or ']'"},
    {R"({"op":publish})",
     "column 7: unexpected 'p'; expected a number, true, false or a text in double quotes"},
    {R"({"op":"isPortExist","port":0x7001})",
     "column 29: a hexadecimal number stands in double quotes"},
    {R"({"op":"initialize)", "column 18: invalid string: missing closing quote"},
    {R"({"op":"isPortExist","port":1,"sensorId":2,"port":1})", "field \"port\" appears twice"},
    {R"({"a":x)",
     "column 6: unexpected 'x'; expected a number, true, false or a text in double quotes"},
    {R"({"op":"getP1CropSetting","zoomRatio":1e99})", "number overflow parsing '1e99'"},
    {R"({"a":[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]})", "nested too deeply"},
};
INSTANTIATE_TEST_SUITE_P(Syntax, BadLineTest, testing::ValuesIn(kSyntax));

constexpr BadLine kFields[] = {
    {R"({"requestNo":1})", "op: missing"},
    {R"({"op":7})", "op: must be a string"},
    {R"({"Op":"initialize"})", "op: missing; there is Op"},
    {R"({"op":"query"})", "query: unknown operation"},
    {R"({"op":"getp1cropsetting"})",
     "getp1cropsetting: unknown operation; did you mean getP1CropSetting?"},
    {R"({"op":"getP9CropSetting"})",
     "getP9CropSetting: unknown operation; did you mean getP1CropSetting?"},
    {R"({"op":"getP2Crop"})", "getP2Crop: unknown operation; did you mean getP2CropSetting?"},
    {R"({"op":"initialise"})", "initialise: unknown operation; did you mean initialize?"},
    {R"({"op":"publih"})", "publih: unknown operation; did you mean publish?"},
    {R"({"op":"oobserved"})", "oobserved: unknown operation; did you mean observed?"},
    {R"({"op":"pblsh"})", "pblsh: unknown operation; did you mean publish?"},
    {R"({"op":"pbls"})", "pbls: unknown operation"},  // a third of the letters may be wrong
    {R"({"op":"get"})", "get: unknown operation"},    // might begin many
    {R"({"op":"SensorCropMapper.getSensorCropSetting"})",
     "SensorCropMapper.getSensorCropSetting: unknown operation; did you mean "
     "SensorCropMapper.getSensorCrop?"},
    {R"({"op":"onRequestDone","requestNo":1,"line":7})",
     "line: results have it, a scenario does not"},
    {R"({"op":"onRequestDone"})", "onRequestDone: requestNo: missing"},
    {R"({"op":"onRequestDone","requstNo":1})",
     "onRequestDone: requestNo: missing; there is requstNo"},
    {R"({"op":"correctTgCropRegion","sensorMode":1})", "correctTgCropRegion: sensorId: missing"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"sensor_mode":{}})",
     "setRunTimeCropNeedData: sensor_mode: unknown field; did you mean sensorModes?"},
    {R"({"op":"onRequestDone","requestNo":1,"notice":0})", "onRequestDone: notice: unknown field"},
    {R"({"op":"getP1CropSetting","requestNo":1,"zoomRatio":1,"manual":true})",
     "getP1CropSetting: manual: unknown field"},
    {R"({"op":"getP1CropSetting","requestNo":1})", "getP1CropSetting: zoomRatio: missing"},
    {R"({"op":"getP1CropSetting","requestNo":1,"zoomRatio":1,"need":{"streamCrops":{}}})",
     "getP1CropSetting: need.streamCrops: unknown field"},
    {R"({"op":"storeOverrideSetting","requestNo":1})",
     "storeOverrideSetting: needs either metadata or a setting"},
    {R"({"op":"storeOverrideSetting","metadata":{},"requestNo":1})",
     "storeOverrideSetting: requestNo: unknown field"},
    {R"({"op":"storeOverrideSetting","setting":null})", "storeOverrideSetting: requestNo: missing"},
    {R"({"op":"sensor","id":0,"modes":{"1":{"window":[0,0,1,1]}}})",
     "sensor: modes.1: a window needs a size"},
    {R"({"op":"sensor","id":0,"modes":{"1":{"size":[1,1],"window":[0,0,1,1],"matrix":[1,0,1,0]}}})",
     "sensor: modes.1: has both a window and a matrix"},
    {R"({"op":"logger","levels":{"0":true,"8":true}})", "logger: levels: there is no level 8"},
    {R"({"op":"initialize","mode":0,"t":-1})", "initialize: t: must not be negative"},
    {R"({"op":"sensor","id":0,"modes":{},"dur":1.5})", "sensor: dur: must be an integer"},
};
INSTANTIATE_TEST_SUITE_P(Fields, BadLineTest, testing::ValuesIn(kFields));

constexpr BadLine kValues[] = {
    {R"({"op":"onRequestDone","requestNo":1.0})", "onRequestDone: requestNo: must be an integer"},
    {R"({"op":"onRequestDone","requestNo":18446744073709551616})",
     "onRequestDone: requestNo: out of range, must be 0 to 4294967295 or -1"},
    {R"({"op":"isPortExist","sensorId":-18446744073709551616,"port":1})",
     "isPortExist: sensorId: out of range, must be -2147483648 to 2147483647"},
    {R"({"op":"onRequestDone","requestNo":"0x"})", "onRequestDone: requestNo: must be an integer"},
    {R"({"op":"onRequestDone","requestNo":-2})",
     "onRequestDone: requestNo: out of range, must be 0 to 4294967295 or -1"},
    {R"({"op":"onRequestDone","requestNo":"0x100000000"})",
     "onRequestDone: requestNo: out of range, must be 0 to 4294967295 or -1"},
    {R"({"op":"getHistoryCropNeedData","requestNo":4294967296})",
     "getHistoryCropNeedData: requestNo: out of range, must be -2147483648 to 4294967295"},
    {R"({"op":"isPortExist","sensorId":2147483648,"port":1})",
     "isPortExist: sensorId: out of range, must be -2147483648 to 2147483647"},
    {R"({"op":"configSensorBehaviorInfo","portSizes":{"0":{"256":[1,1]}}})",
     "configSensorBehaviorInfo: portSizes.0.256: key: out of range, must be 0 to 255"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"-2":1}})",
     "setRunTimeCropNeedData: sensorModes.-2: key: out of range, must be 0 to 4294967295 or -1"},
    {R"({"op":"configSensorBehaviorInfo","portSizes":{"0":{"0x1g":[1,1]}}})",
     "configSensorBehaviorInfo: portSizes.0.0x1g: key: must be an integer"},
    {R"({"op":"getP1CropSetting","requestNo":1,"zoomRatio":1,"need":{"tgCrops":{"0":{"0x10000":0}}}})",
     "getP1CropSetting: need.tgCrops.0.0x10000: key: out of range, must be 0 to 65535"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"extraTable":{"1":"0x80000000"}})",
     "setRunTimeCropNeedData: extraTable.1: out of range, must be -2147483648 to 2147483647"},
    {R"({"op":"storeOverrideSetting","requestNo":1,"setting":{"extraAaCrops":{"0":[1,2,3,"x"]}}})",
     "storeOverrideSetting: setting.extraAaCrops.0[3]: must be a number, \"nan\", \"inf\" or "
     "\"-inf\""},
    {R"({"op":"storeOverrideSetting","metadata":{"customStreamCrops":[1,2.5]}})",
     "storeOverrideSetting: metadata.customStreamCrops[1]: must be an integer"},
    {R"({"op":"observed","requestNo":1,"activePhysicalId":2})",
     "observed: activePhysicalId: must be a string"},
    {R"({"op":"configFspInfo","fspPorts":{"0":65536}})",
     "configFspInfo: fspPorts.0: out of range, must be 0 to 65535"},
    {R"({"op":"configFspInfo","fspPorts":{"0":-1}})",
     "configFspInfo: fspPorts.0: out of range, must be 0 to 65535"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"streamSizes":{"0x10000000000000000":[1,1]}})",
     "setRunTimeCropNeedData: streamSizes.0x10000000000000000: key: out of range, must be "
     "-9223372036854775808 to 9223372036854775807"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"streamSizes":{"16":[1,1],"0x10":[1,1]}})",
     "setRunTimeCropNeedData: streamSizes.16: another spelling of a key that is there already"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"streamSizes":{"7":[640]}})",
     "setRunTimeCropNeedData: streamSizes.7: must be [w, h]"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"streamSizes":{"7":[640,"x"]}})",
     "setRunTimeCropNeedData: streamSizes.7[1]: must be an integer"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":[]})",
     "setRunTimeCropNeedData: sensorModes: must be an object"},
    {R"({"op":"setRunTimeCropNeedData","requestNo":1,"notice":"again"})",
     "setRunTimeCropNeedData: notice: must be an integer or one of \"default\", \"repeating\""},
    {R"({"op":"initialize","mode":"Instant"})",
     "initialize: mode: must be an integer or one of \"None\", \"ExternalAPI\", \"ByRequest\", "
     "\"InstantRequest\""},
    {R"({"op":"correctTgCropRegion","sensorId":0,"sensorMode":1,"crop":[0,0,1]})",
     "correctTgCropRegion: crop: must be [x, y, w, h]"},
    {R"({"op":"correctTgCropRegion","sensorId":0,"sensorMode":1,"checkMinSize":1,"crop":[0,0,1,1]})",
     "correctTgCropRegion: checkMinSize: must be true or false"},
    {R"({"op":"getP1CropSetting","requestNo":1,"zoomRatio":"2"})",
     "getP1CropSetting: zoomRatio: must be a number, \"nan\", \"inf\" or \"-inf\""},
    {R"({"op":"configSensorInfo","sensorIds":0})", "configSensorInfo: sensorIds: must be an array"},
    {R"({"op":"sensor","id":0,"modes":{"1":{"matrix":[1,0,1]}}})",
     "sensor: modes.1.matrix: must be [xScale, xOffset, yScale, yOffset]"},
    {R"({"op":"sensor","id":0,"modes":{"1":{"matrix":[1,0,1,0,1]}}})",
     "sensor: modes.1.matrix: must be [xScale, xOffset, yScale, yOffset]"},
};
INSTANTIATE_TEST_SUITE_P(Values, BadLineTest, testing::ValuesIn(kValues));

}  // namespace
}  // namespace zoomreplay::test
