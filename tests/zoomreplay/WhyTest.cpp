// The steps that made a crop, in words, with the lines that brought them.
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

using testing::HasSubstr;

struct Question {
    std::vector<std::string> arguments;  ///< an example's name and what is asked of it
    std::vector<std::string> answer;     ///< parts of what is told, in their order
};

void PrintTo(Question const& question, std::ostream* out) {
    *out << testing::PrintToString(question.arguments);
}

class WhyTest : public ToolTest, public testing::WithParamInterface<Question> {};

TEST_P(WhyTest, TellsTheSteps) {
    auto arguments = GetParam().arguments;
    arguments.front() = EXAMPLES + arguments.front();
    arguments.insert(arguments.begin(), "why");
    auto const result = run(arguments);

    EXPECT_EQ(result.status, 0) << result.err;
    size_t place = 0;
    for (std::string const& part : GetParam().answer) {
        place = result.out.find(part, place);
        ASSERT_NE(place, std::string::npos) << part << "\nis missing in\n" << result.out;
    }
}

// The comments on top of the examples work the numbers out.
Question const kQuestions[] = {
    {{"by-request-settings.jsonl", "4"},
     {"Request 4, P1 of line 38 for 2.00x: not overridden\n", "overrides P2 only\n",
      "Request 4, P2 of line 39 for 2.00x: overridden\n",
      "2x of the setting (line 36) for request 6, ahead of request 4, is not below the asked 2x\n",
      "sensor 0, crop: (576, 324)/1152x648\n",
      "(1152.7, 648.3)/2304.9x1296.5   active  preview crop of the setting (line 24)\n",
      "active  the setting was renewed for request 6 (line 36)\n",
      "(576, 324)/1152x648             TG      converted to sensor mode 1 (line 37), ",
      "(576.35, 324.15)/1152.45x648.25", "sensor 0, second crop: (0, 150)/2304x995\n",
      "active  second crop of the setting (line 24)\n",
      "larger than the sensor's output of 2304x1296: shrunk"}},
    {{"by-request-settings.jsonl", "5", "--sensor", "0"},
     {"the setting is switched off (line 41)\n"}},
    {{"external-zoom-ramp.jsonl", "10", "--sensor", "1", "--port", "0x7002"},
     {"(line 71) is below the asked 2.4x: P1 shows the wider view\n",
      "sensor 1, port 0x7002: (818, 460)/668x375\n",
      "(0, 0)/4608x2592                active  2x is published (line 71)\n",
      "(1636, 920)/1336x751            active  mapped for 2x ", "(818, 460)/668x375.5",
      "the bundle port 0x7002 takes the crop of port 0x7001"}},
};
INSTANTIATE_TEST_SUITE_P(Examples, WhyTest, testing::ValuesIn(kQuestions));

using WhyStateTest = ToolTest;

// Stream ...1 is grown to stream ...2, which it follows, and moved; ...2 has no crop of its own.
// The second query gets the first one's answer, whatever has come since.
TEST_F(WhyStateTest, TellsOfStreamsAndOfKeptAnswers) {
    write("s.jsonl", std::string(kSensor) + R"({"op":"initialize","mode":3}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1},"streamSizes":{"0x70010000000001":[64,48],"0x70020000000002":[640,480]},"constraintStreams":{"0x70010000000001":"0x70020000000002"}}
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
                                            0x70020000000002: grown to it and centred

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
TEST_F(WhyStateTest, StaysInStepWithTheLibrary) {
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

// Half of it is beyond the upper edge, and then the right one.
TEST_F(WhyStateTest, RectanglesAreThoseOfTheirSteps) {
    write("s.jsonl", std::string(kSensor) + R"({"op":"initialize","mode":"ByRequest"}
{"op":"setRunTimeCropNeedData","requestNo":1,"sensorModes":{"0":1}}
{"op":"storeOverrideSetting","requestNo":2,"setting":{"overrideValid":true,"requestNo":2,"zoomRatio":2,"previewAaCrops":{"0":[10000.125,-64,100,100]}}}
{"op":"getP2CropSetting","requestNo":1,"zoomRatio":1}
)");
    EXPECT_THAT(outputOf(run({"why", "s.jsonl", "1"})),
                testing::AllOf(HasSubstr("    (10000.125, -64)/100x100 "),
                               HasSubstr("    (5000, 0)/50x50 ")));
}

}  // namespace
}  // namespace zoomreplay::test
