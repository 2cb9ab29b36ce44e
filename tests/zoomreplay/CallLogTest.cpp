// --log: what a call wrote stands in its result. Results of all operations are in views/.
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

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
