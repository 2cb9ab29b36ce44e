// No operation and no record of a scenario takes a field that it does not know.
#include <set>

#include "ToolTest.h"
#include "replay/Operations.h"

namespace zoomreplay::test {
namespace {

struct Complete {
    std::string op;
    std::string fields;  // those that must be there; $ marks where one too many goes
    std::string record;  // that has it, for the message
};

Complete const kComplete[] = {
    {"property", R"("name":"x","value":1,$)", ""},
    {"logger", "$", ""},
    {"sensor", R"("id":0,"modes":{},$)", ""},
    {"sensor", R"("id":0,"modes":{"1":{$}})", "modes.1."},
    {"publish", "$", ""},
    {"observed", R"("requestNo":1,$)", ""},
    {"initialize", R"("mode":0,$)", ""},
    {"getZoomOverrideMode", "$", ""},
    {"configFspInfo", "$", ""},
    {"configSensorInfo", "$", ""},
    {"configSensorInfo", R"("sensorInfos":{"2":{$}})", "sensorInfos.2."},
    {"configSensorBehaviorInfo", "$", ""},
    {"setRunTimeCropNeedData", R"("requestNo":1,$)", ""},
    {"storeOverrideSetting", R"("metadata":{},$)", ""},
    {"storeOverrideSetting", R"("metadata":{$})", "metadata."},
    {"storeOverrideSetting", R"("requestNo":1,"setting":null,$)", ""},
    {"storeOverrideSetting", R"("requestNo":1,"setting":{$})", "setting."},
    {"getP1CropSetting", R"("requestNo":1,"zoomRatio":1,$)", ""},
    {"getP1CropSetting", R"("requestNo":1,"zoomRatio":1,"need":{$})", "need."},
    {"getP2CropSetting", R"("requestNo":1,"zoomRatio":1,$)", ""},
    {"getP2CropSetting", R"("requestNo":1,"zoomRatio":1,"need":{$})", "need."},
    {"get3ACropSetting", R"("requestNo":1,"zoomRatio":1,$)", ""},
    {"get3ACropSetting", R"("requestNo":1,"zoomRatio":1,"need":{$})", "need."},
    {"onRequestDone", R"("requestNo":1,$)", ""},
    {"getHistoryCropNeedData", R"("requestNo":1,$)", ""},
    {"isPortExist", R"("sensorId":1,"port":1,$)", ""},
    {"correctTgCropRegion", R"("sensorId":0,"sensorMode":1,"crop":[0,0,1,1],$)", ""},
    {"SensorCropMapper.config", "$", ""},
    {"SensorCropMapper.getSensorCrop", R"("zoomRatio":1,$)", ""},
    {"SensorCropMapper.getSensorCrop", R"("zoomRatio":1,"output":{$})", "output."},
};

class UnknownFieldTest : public ToolTest {};

TEST_F(UnknownFieldTest, IsRefusedByEveryOperationAndRecord) {
    std::set<std::string_view> ops;
    for (auto const& [op, fields, record] : kComplete) {
        ops.insert(op);
        std::string line = R"({"op":")";
        line.append(op).append("\",").append(fields).append("}\n");
        auto const result = replay(line.replace(line.find('$'), 1, R"("xyzzy":0)"));
        EXPECT_EQ(result.status, 2) << line;
        std::string complaint = "s.jsonl:1: ";
        complaint.append(op).append(": ").append(record).append("xyzzy: unknown field\n");
        EXPECT_EQ(result.err, complaint);
    }
    for (auto const group : {platformOperations(), managerOperations(), mapperOperations()}) {
        for (Operation const& operation : group) {
            EXPECT_EQ(ops.count(operation.name), 1U) << operation.name;
        }
    }
}

}  // namespace
}  // namespace zoomreplay::test
