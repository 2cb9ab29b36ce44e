// Replays with a customer's mapper that throws or crashes.
#include <csignal>
#include <cstdlib>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

class MapperFaultsTest : public ToolTest {
 protected:
    ToolRun runWithMapper(std::vector<std::string> const& arguments) const {
        return run(arguments, "", [] {
            setenv("LD_LIBRARY_PATH", FAULTY_MAPPER_FOLDER, 1 /* overwrite */);
            setenv("ASAN_OPTIONS", "handle_segv=0", 1 /* overwrite */);  // the tool does
        });
    }

    std::string const mScenario = std::string(kSensor) + R"({"op":"initialize","mode":"ExternalAPI"}
{"op":"configSensorInfo","sensorIds":[0],"sensorInfos":{"0":{"degreeH":66,"degreeV":41,"activeArray":[0,0,4608,2592]}}}
{"op":"configSensorBehaviorInfo","portSizes":{"0":{"1":[2304,1296]}}}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1}}
{"op":"publish","zoomRatio":2,"enable":true}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"publish","zoomRatio":8,"enable":true}
{"op":"setRunTimeCropNeedData","requestNo":2,"sensorModes":{"0":1}}
{"op":"getP1CropSetting","requestNo":2,"zoomRatio":9}
{"op":"SensorCropMapper.getSensorCrop","enable":true,"zoomRatio":9}
{"op":"onRequestDone","requestNo":1}
)";
};

TEST_F(MapperFaultsTest, WhateverIsThrownIsAResultAndAReportChangesNothing) {
    write("s.jsonl", mScenario);
    auto const plain = runWithMapper({"s.jsonl", "-o", "-"});
    auto const pictured =
        runWithMapper({"s.jsonl", "-o", "-", "--report", "r.html", "--trace", "t.json"});

    using testing::HasSubstr;
    EXPECT_EQ(plain.status, 0) << plain.err;
    EXPECT_THAT(
        plain.out,
        HasSubstr(R"({"line": 3, "op": "configSensorInfo", "exception": "runtime_error",)"));
    EXPECT_THAT(plain.out, HasSubstr(R"("tgCrops": {"0": {"0x7001": [50, 50, 500, 375],)"));
    for (char const* op : {R"("line": 10, "op": "getP1CropSetting")",
                           R"("line": 11, "op": "SensorCropMapper.getSensorCrop")"}) {
        EXPECT_THAT(plain.out,
                    HasSubstr(std::string(op) +
                              R"(, "exception": "unknown", "what": "no std::exception"})"));
    }
    EXPECT_THAT(plain.out,
                testing::EndsWith("{\"line\": 12, \"op\": \"onRequestDone\", \"result\": true}\n"));
    EXPECT_EQ(pictured.status, 0) << pictured.err;
    EXPECT_EQ(pictured.out, plain.out);
}

TEST_F(MapperFaultsTest, ProcessThatLeavesIsToldWithItsRecord) {
    write("r.jsonl", mScenario +
                         R"({"op":"SensorCropMapper.getSensorCrop","enable":true,"zoomRatio":32})"
                         "\n");
    auto const result = runWithMapper({"run", "r.jsonl"});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err, "r.jsonl:13: the process ended early, with status 0\n");
    EXPECT_THAT(result.out,
                testing::HasSubstr("           3      0            -  killed   r.jsonl\n"));
}

// Nobody else can ask the mapper what it made of the ratio.
TEST_F(MapperFaultsTest, CropsThatNoStepsLeadToAreTold) {
    write("s.jsonl", mScenario);
    auto const result = runWithMapper({"why", "s.jsonl", "1"});

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, R"(Request 1, P1 of line 7 for 4.00x: overridden
  published 2x (line 6) is below the asked 4x: P1 shows the wider view
  sensor 0, port 0x7001: (50, 50)/500x375
    these steps do not end at the library's answer
  sensor 0, port 0x7002: (50, 50)/500x375
    these steps do not end at the library's answer
)");
}

TEST_F(MapperFaultsTest, ExceptionsAreToldByTheirKind) {
    for (auto const& [ratio, told] :
         std::map<std::string, std::string>{{"10", R"("logic_error", "what": "10x")"},
                                            {"11", R"("bad_alloc")"},
                                            {"12", R"("exception")"}}) {
        write("s.jsonl",
              R"({"op":"SensorCropMapper.getSensorCrop","enable":true,"zoomRatio":)" + ratio + "}");
        EXPECT_THAT(runWithMapper({"s.jsonl", "-o", "-"}).out,
                    testing::HasSubstr("\"exception\": " + told));
    }
}

TEST_F(MapperFaultsTest, CrashKeepsEverythingBeforeItAndNothingHalf) {
    auto const crashAt = [](std::string const& ratio) {
        std::string const narrow =
            R"({"op":"SensorCropMapper.getSensorCrop","enable":true,"zoomRatio":)";
        return std::string(kModeLine) + narrow + "2}\n" + narrow + ratio + "}\n" +
               std::string(kModeLine);
    };
    for (auto const& [ratio, signal] : {std::pair{"16", SIGABRT}, std::pair{"17", SIGSEGV}}) {
        write("s.jsonl", crashAt(ratio));
        auto const result = runWithMapper({"s.jsonl", "-o", "-", "--report", "r.html"});

        EXPECT_EQ(readAll().size(), 1U);
        EXPECT_EQ(result.status, -signal);
        EXPECT_EQ(result.out,
                  std::string(kModeResult) +
                      R"({"line": 2, "op": "SensorCropMapper.getSensorCrop", "result": true, )"
                      R"("output": {"isValid": true, "zoomRatio": 2, )"
                      R"("sensorCrops": {"0": [0, 0, 1000, 750]}}})"
                      "\n");
    }
}

TEST_F(MapperFaultsTest, TextsOfACustomerCannotSteerTheTerminal) {
    write("s.jsonl", mScenario);
    EXPECT_THAT(
        runWithMapper({"s.jsonl"}).out,
        testing::HasSubstr("configSensorInfo: exception runtime_error:  2Jno calibration\n"));
}

}  // namespace
}  // namespace zoomreplay::test
