// The steps that made a crop, in words, with the lines that brought them. Whole answers are in
// views/.
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

using testing::HasSubstr;

using WhyTest = ToolTest;

// Stream ...1 is grown to stream ...2, which it follows, and moved; ...2 has no crop of its own.
// The second query gets the first one's answer, whatever has come since.
TEST_F(WhyTest, TellsOfStreamsAndOfKeptAnswers) {
    write("s.jsonl", std::string(kSensor) + R"({"op":"initialize","mode":3}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1},"streamSizes":{"0x70010000000001":[64,48],"0x70020000123456":[640,480]},"constraintStreams":{"0x70010000000001":"0x70020000123456"}}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":2,"customStreamCrops":[1,4400,0,400,300]},"streamIdMap":{"1":"0x70010000000001"}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"storeOverrideSetting","metadata":{"zoomRatio":9},"streamIdMap":{}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"getP1CropSetting","requestNo":2,"zoomRatio":4}
)");
    auto const result = run({"why", "s.jsonl", "1-2"});

    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, R"(Request 1, P1 of line 5 for 4.00x: overridden
  2x of the metadata (line 4) is below the asked 4x: P1 shows the wider view
  sensor 0, port 0x7001: (832, 408)/640x480
    (4400, 0)/400x300               active  custom crop of stream 0x70010000000001 (line 4)
    (2200, 0)/200x150               TG      converted to sensor mode 1 (line 3), x by 0.5 and 0, y
                                            by 0.5 and 0: exactly (2200, 0)/200x150, fractions cut
    (832, 408)/640x480              TG      smaller than 640x480, the size of stream
                                            0x70020000123456: grown to it and centred

Request 1, P1 of line 7 for 4.00x: overridden
  the answer of line 5, kept until the request is done
  sensor 0, port 0x7001: (832, 408)/640x480

Request 2, P1 of line 8 for 4.00x: not overridden
  the metadata has no usable custom crops (line 6)
)");
    EXPECT_EQ(run({"why", "s.jsonl", "1", "--sensor", "3"}).err,
              "request 1: has no crop of that sensor or port\n");
    EXPECT_EQ(run({"why", "s.jsonl", "1-2", "--port", "0x7002"}).err,
              "request 1-2: has no crop of that sensor or port\n");
    EXPECT_EQ(run({"why", "s.jsonl", "2", "--port", "0x7002"}).err, "");
    EXPECT_EQ(run({"why", "s.jsonl", "7-9"}).err, "request 7-9: no line asks for its crops\n");
}

// The deposit is replaced, what the caller holds counts for one query, a request that is done may
// come again, a mode's size is the first that was asked for, and a new mode knows no angles.
TEST_F(WhyTest, StaysInStepWithTheLibrary) {
    write("s.jsonl", std::string(kSensor) + R"({"op":"initialize","mode":"ExternalAPI"}
{"op":"configSensorInfo","sensorIds":[0],"sensorInfos":{"0":{"degreeH":90.12345,"degreeV":60,"activeArray":[0,0,4608,2592]}}}
{"op":"configSensorBehaviorInfo","portSizes":{"0":{"3":[2304,1296]}}}
{"op":"configFspInfo","fspPorts":{"0":"0x7003"}}
{"op":"publish","zoomRatio":2,"enable":true}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":-1}}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":2,"need":{"streamCrops":{"0":[1,2,3,4]}}}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":2}
{"op":"onRequestDone","requestNo":1}
{"op":"sensor","id":0,"modes":{"1":{"size":[1000,500],"matrix":[0.5,0,0.5,0]}}}
{"op":"publish","zoomRatio":1,"enable":true}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1}}
{"op":"getP1CropSetting","requestNo":1,"zoomRatio":4}
{"op":"initialize","mode":"ExternalAPI"}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":4,"manual":true}
)");
    auto const result = run({"why", "s.jsonl", "1"});

    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_THAT(result.out, testing::EndsWith("published 1x (line 14) for the asked 4x, but the "
                                              "sensor crop mapper has no crops\n"));
    EXPECT_THAT(
        result.out,
        testing::AllOf(HasSubstr("beside the master's 90.12345 by 60"),
                       HasSubstr("port 0x7003: (576, 324)/1152x648\n"), HasSubstr("(line 5)\n"),
                       HasSubstr("in the caller's record before the query\n"),
                       HasSubstr("port 0x7003: (0, 0)/2304x1296\n"
                                 "    (0, 0)/4608x2592                active  1x is "
                                 "published (line 14)\n")));
}

}  // namespace
}  // namespace zoomreplay::test
