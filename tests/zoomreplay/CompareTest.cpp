// --compare: what counts as a difference and how differences are told.
#include <numeric>
#include <sstream>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

// The results that all tests compare with: lines 2 to 4 of this scenario.
std::string const kScenario = std::string(kSensor) +
                              R"({"op":"getZoomOverrideMode","t":7,"dur":1}
{"op":"correctTgCropRegion","sensorId":0,"sensorMode":1,"crop":[0,0,100,75]}
{"op":"get3ACropSetting","requestNo":1,"zoomRatio":2,"need":{"requestNo":16777217,"zoomRatio":-0.0}}
)";
std::string const kMode =
    R"({"line": 2, "t": 7, "dur": 1, "op": "getZoomOverrideMode", "result": 0})";
std::string const kFit =
    R"({"line": 3, "op": "correctTgCropRegion", "result": true, "crop": [0, 0, 100, 75]})";
std::string const kNeed =
    R"({"line": 4, "op": "get3ACropSetting", "result": false, "need": {"overrideValid": false, "requestNo": 16777217, "zoomRatio": -0.0, "mode": 0}})";

struct Expectation {
    char const* name;
    std::vector<std::string> expected;
    int status;
    std::string message;
};

void PrintTo(Expectation const& expectation, std::ostream* out) {
    *out << expectation.name;
}

class CompareTest : public ToolTest, public testing::WithParamInterface<Expectation> {};

TEST_P(CompareTest, TellsDifferences) {
    std::string expected;
    for (std::string const& line : GetParam().expected) {
        expected += line + '\n';
    }
    write("e.jsonl", expected);
    auto const result = replay(kScenario, {"--compare", "e.jsonl"});

    EXPECT_EQ(result.status, GetParam().status);
    EXPECT_EQ(result.err, GetParam().message);
    if (result.status < 2) {
        EXPECT_EQ(result.out, kMode + '\n' + kFit + '\n' + kNeed + '\n');
    }
}

std::string const kFitReordered =
    R"({ "crop":[0,0,1e2,75.0], "result":true, "op":"correctTgCropRegion", "line":3 })";
std::string const kFitLogged =
    R"({"line": 3, "op": "correctTgCropRegion", "result": true, "crop": [0, 0, 100, 75], "log": []})";
std::string const kFitTimed =
    R"({"line": 3, "t": 9, "dur": 1, "op": "correctTgCropRegion", "result": true, "crop": [0, 0, 100, 75]})";
std::string const kFitOther =
    R"({"line": 3, "op": "correctTgCropRegion", "result": "true", "crop": [0, 0, 100, 76], "log": []})";
std::string const kFitFields =
    R"({"line": 3, "op": "correctTgCropRegion", "result": true, "x": {}})";
std::string const kNeedPositive =
    R"({"line": 4, "op": "get3ACropSetting", "result": false, "need": {"overrideValid": false, "requestNo": 16777217, "zoomRatio": 0, "mode": 0}})";
std::string const kNeedFields =
    R"({"line": 4, "op": "get3ACropSetting", "result": 0, "need": {"overrideValid": [], "requestNo": 16777216, "zoomRatio": -0e9, "mode": {"a": ")" +
    std::string(200, 'b') + "\"}, \"x\": [{\"y\": -0, \"z\": 1.5}]}}";

Expectation const kExpectations[] = {
    {"same", {kMode, kFit, kNeed}, 0, ""},
    {"time", {kMode, kFitTimed, kNeed}, 0, ""},
    {"spelling and log", {"// comment", "", kMode, kFitReordered, kNeed}, 0, ""},
    {"log on one side", {kMode, kFitLogged, kNeed}, 0, ""},
    {"type and value",
     {kMode, kFitOther, kNeed},
     1,
     "s.jsonl:3: correctTgCropRegion: crop: expected [0, 0, 100, 76], got [0, 0, 100, 75]\n"
     "s.jsonl:3: correctTgCropRegion: result: expected \"true\", got true\n"
     "1 result differs, in 0 requests\n"},
    {"fields",
     {kMode, kFitFields, kNeed},
     1,
     "s.jsonl:3: correctTgCropRegion: x: expected {}, got nothing\n"
     "s.jsonl:3: correctTgCropRegion: crop: expected nothing, got [0, 0, 100, 75]\n"
     "1 result differs, in 0 requests\n"},
    {"sign of zero",
     {kMode, kFit, kNeedPositive},
     1,
     "s.jsonl:4: request 1: get3ACropSetting: need.zoomRatio: expected 0, got -0.0\n"
     "1 result differs, in 1 request\n"},
    {"fields of records, numbers that a float does not tell apart, and long values",
     {kMode, kFit, kNeedFields},
     1,
     "s.jsonl:4: request 1: get3ACropSetting: need.mode: expected {\"a\":\"" +
         std::string(154, 'b') +
         "..., got 0\n"
         "s.jsonl:4: request 1: get3ACropSetting: need.overrideValid: expected [], got false\n"
         "s.jsonl:4: request 1: get3ACropSetting: need.requestNo: expected 16777216, got "
         "16777217\n"
         "s.jsonl:4: request 1: get3ACropSetting: need.x: expected [{\"y\":0,\"z\":1.5}], got "
         "nothing\n"
         "s.jsonl:4: request 1: get3ACropSetting: result: expected 0, got false\n"
         "1 result differs, in 1 request\n"},
    {"too few at the front",
     {kFit, kNeed},
     1,
     "s.jsonl:2: getZoomOverrideMode: expected no result, got one\n"
     "1 result differs, in 0 requests\n"},
    {"too few at the end",
     {kMode},
     1,
     "s.jsonl:3: correctTgCropRegion: expected no result, got one\n"
     "s.jsonl:4: request 1: get3ACropSetting: expected no result, got one\n"
     "2 results differ, in 1 request\n"},
    {"too many",
     {R"({"line": 1, "op": "initialize"})", kMode, kFit, kNeed,
      R"({"line": 9, "op": "onRequestDone"})"},
     1,
     "e.jsonl:1: initialize: expected a result, got none\n"
     "e.jsonl:5: onRequestDone: expected a result, got none\n"
     "2 results differ, in 0 requests\n"},
    {"lines that moved",
     {R"({"line": 12, "op": "getZoomOverrideMode", "result": 0})",
      R"({"line": 13, "op": "correctTgCropRegion", "result": true, "crop": [0, 0, 100, 75]})",
      kNeed},
     0,
     ""},
    {"bad syntax",
     {kMode, "{"},
     2,
     "e.jsonl:2: column 2: unexpected end of line; expected a name in double quotes\n"},
    {"a scenario",
     {R"({"op": "initialize"})"},
     2,
     "e.jsonl:1: line: missing; results have it, a scenario does not\n"},
    {"no operation", {kMode, "{\"line\": 3}"}, 2, "e.jsonl:2: op: must be a string\n"},
    {"bad line number",
     {kMode, "{\"line\": \"3\"}"},
     2,
     "e.jsonl:2: line: must be the number of a scenario line\n"},
};
INSTANTIATE_TEST_SUITE_P(Expectations, CompareTest, testing::ValuesIn(kExpectations));

TEST_F(CompareTest, PrintsTheFirstTenAndCountsTheRest) {
    std::string scenario;
    for (int i = 0; i < 13; ++i) {
        scenario += kModeLine;
    }
    write("e.jsonl", "");
    auto const result = replay(scenario, {"--compare", "e.jsonl"});

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 12);
    EXPECT_THAT(result.err, testing::HasSubstr("s.jsonl:10: "));
    EXPECT_THAT(result.err,
                testing::EndsWith("\nand 3 more differences\n13 results differ, in 0 requests\n"));
}

/// A ramp of requests, each with another crop.
std::string ramp(std::vector<int> const& requests, int wider = 0) {
    std::ostringstream scenario;
    scenario << kSensor << R"({"op":"initialize","mode":"ByRequest"})" << '\n';
    for (int const request : requests) {
        scenario << R"({"op":"setRunTimeCropNeedData","sensorModes":{"0":1},"requestNo":)"
                 << request << "}\n"
                 << R"({"op":"storeOverrideSetting","requestNo":999,"setting":{)"
                 << R"("overrideValid":true,"requestNo":999,"zoomRatio":2,)"
                 << R"("previewAaCrops":{"0":[0,0,)" << request + wider << ",10]}}}\n"
                 << R"({"op":"getP2CropSetting","zoomRatio":1,"requestNo":)" << request << "}\n"
                 << R"({"op":"onRequestDone","requestNo":)" << request << "}\n";
    }
    return scenario.str();
}

std::vector<int> fromTo(int first, int last) {
    std::vector<int> numbers(static_cast<size_t>(last - first + 1));
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

/// The messages about the four results of a request, from this line on.
std::string requestTold(std::string const& file, int line, std::string const& request,
                        std::string const& message) {
    std::string told;
    for (char const* op :
         {"setRunTimeCropNeedData", "storeOverrideSetting", "getP2CropSetting", "onRequestDone"}) {
        bool const isAbout = std::string(op) != "storeOverrideSetting";
        told += file + ':' + std::to_string(line++) + ": ";
        told += isAbout ? request : "";
        told += op;
        told += ": " + message + '\n';
    }
    return told;
}

// The expected results are those of 200 requests: request 100 + i has the lines from 3 + 4 * i on,
// and its results those from 2 + 4 * i on.
TEST_F(CompareTest, FindsWhatBelongsTogetherInAnEditedScenario) {
    auto const all = fromTo(100, 299);
    write("e.jsonl", outputOf(replay(ramp(all), {})));
    auto const differ = [&](std::string const& scenario) {
        return replay(scenario, {"--compare", "e.jsonl"}).err;
    };
    EXPECT_EQ(differ("// a comment on top\n\n" + ramp(all)), "");
    EXPECT_THAT(differ(ramp(fromTo(100, 109))),
                testing::EndsWith("\n760 results differ, in 190 requests\n"));

    std::string const isNew = "expected no result, got one";
    std::string const inOne = "4 results differ, in 1 request\n";
    EXPECT_THAT(differ(ramp(all) + std::string(kModeLine)),
                testing::EndsWith(": getZoomOverrideMode: " + isNew +
                                  "\n1 result differs, in 0 requests\n"));

    auto added = all;
    added.insert(added.begin() + 100, 700);
    EXPECT_EQ(differ(std::string(kModeLine) + ramp(added)),
              "s.jsonl:1: getZoomOverrideMode: " + isNew + '\n' +
                  requestTold("s.jsonl", 404, "request 700: ", isNew) +
                  "5 results differ, in 1 request\n");

    auto twice = all;
    twice.insert(twice.begin() + 50, 150);
    EXPECT_EQ(differ(ramp(twice)), requestTold("s.jsonl", 207, "request 150: ", isNew) + inOne);

    auto removed = all;
    removed.erase(removed.begin() + 50);
    EXPECT_EQ(differ(ramp(removed)),
              requestTold("e.jsonl", 202, "", "expected a result, got none") + inOne);

    // Beyond any window, and with a change before and behind it.
    auto edited = all;
    edited.front() = 800;
    edited.back() = 801;
    edited.erase(edited.begin() + 50, edited.begin() + 150);
    EXPECT_THAT(
        differ(ramp(edited)),
        testing::AllOf(testing::HasSubstr("e.jsonl:202: setRunTimeCropNeedData: expected a"),
                       testing::EndsWith("\n402 results differ, in 102 requests\n")));

    auto changed = all;
    changed[20] = 801;
    changed[120] = 803;
    EXPECT_THAT(differ(ramp(changed)),
                testing::AllOf(testing::HasSubstr("s.jsonl:85: request 801: getP2CropSetting: "),
                               testing::EndsWith("\n2 results differ, in 2 requests\n")));
}

// Only its answer tells it from the request before, long after the calls that begin it.
TEST_F(CompareTest, WhatIsAddedBeginsWithItsRequest) {
    std::string const init = R"({"op":"initialize","mode":0})"
                             "\n";
    auto const request = [](std::string const& number) {
        std::string lines = R"({"op":"setRunTimeCropNeedData","requestNo":)" + number + "}\n";
        for (int i = 0; i < 40; ++i) {
            lines += kModeLine;
        }
        return lines + R"({"op":"get3ACropSetting","zoomRatio":1,"need":{"requestNo":)" + number +
               R"(},"requestNo":)" + number + "}\n";
    };
    write("e.jsonl", outputOf(replay(init + request("1") + request("3"), {})));
    EXPECT_THAT(
        replay(init + request("1") + request("2") + request("3"), {"--compare", "e.jsonl"}).err,
        testing::AllOf(testing::StartsWith("s.jsonl:44: request 2: setRunTime"),
                       testing::EndsWith("\n42 results differ, in 1 request\n")));
}

// It would look like a request that was added on top, and one that was removed at the end.
TEST_F(CompareTest, AnswersThatComeARequestLateAllDiffer) {
    write("e.jsonl", outputOf(replay(ramp(fromTo(100, 149)), {})));
    EXPECT_THAT(replay(ramp(fromTo(100, 149), -1), {"--compare", "e.jsonl"}).err,
                testing::EndsWith("\n50 results differ, in 50 requests\n"));
}

TEST_F(CompareTest, TellsWhatDiffersBeforeABadLine) {
    write("e.jsonl", kMode + '\n' + kFitOther + '\n' + kNeed + '\n' + kNeed + '\n');
    auto const result = replay(kScenario + "{}\n", {"--compare", "e.jsonl"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, testing::EndsWith("\n1 result differs, in 0 requests\n"
                                              "s.jsonl:5: op: missing\n"));
}

TEST_F(CompareTest, WritesAllDifferences) {
    write("e.jsonl", kMode + '\n' + kFitOther + '\n');
    auto const result = replay(kScenario, {"--compare", "e.jsonl", "--differences", "d.jsonl"});

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(
        read("d.jsonl"),
        R"({"op": "correctTgCropRegion", "fields": ["crop", "result"], "expected": )" + kFitOther +
            R"(, "actual": )" + kFit + "}\n" +
            R"({"request": 1, "op": "get3ACropSetting", "fields": [], "expected": null, "actual": )" +
            kNeed + "}\n");
}

TEST_F(CompareTest, MessagesDifferByMoreThanTheSourceLine) {
    std::string const scenario = std::string(kModeLine) + std::string(kFatalLine);
    auto const expect = [&](std::string const& function) {
        write("e.jsonl", std::string(kModeResult) +
                             R"({"line": 2, "op": "getHistoryCropNeedData", "fatal": "()" +
                             function +
                             R"(){#1:feature/common/zoomoverride/ZoomOverrideMgr.cpp}"})" + '\n');
        return replay(scenario, {"--compare", "e.jsonl"});
    };

    auto const same = expect("getHistoryCropNeedData");
    EXPECT_EQ(same.status, 3);
    EXPECT_THAT(same.err, testing::Not(testing::HasSubstr("expected")));

    auto const other = expect("isPortExist");
    EXPECT_EQ(other.status, 3);
    EXPECT_THAT(other.err,
                testing::HasSubstr("s.jsonl:2: getHistoryCropNeedData: fatal: expected \"(isPort"));
}

// A run's addresses are its own.
TEST_F(CompareTest, DebugLinesOfTwoRunsAreTheSame) {
    std::string const scenario =
        R"({"op":"property","name":"vendor.debug.camera.zoomOverride.log","value":2}
{"op":"logger","detailsLevel":5}
)" + ramp({1, 2}) +
        R"({"op":"initialize","mode":"ExternalAPI"})";
    write("e.jsonl", outputOf(replay(scenario, {"--log"})));
    EXPECT_THAT(read("e.jsonl"), testing::HasSubstr("Ptr:0x"));
    EXPECT_EQ(replay(scenario, {"--log", "--compare", "e.jsonl"}).err, "");
}

TEST_F(CompareTest, LogsCountWhereBothSidesHaveThem) {
    std::string const scenario =
        std::string(kSensor) + "{\"op\":\"logger\",\"mode\":1}\n" +
        R"({"op":"correctTgCropRegion","sensorId":0,"sensorMode":1,"crop":[3500,0,1000,750]})" +
        '\n';
    std::string expected = outputOf(replay(scenario, {"--log"}));
    auto const number = expected.find(".cpp:") + 5;
    write("e.jsonl", expected.replace(number, 1, "1234"));
    EXPECT_EQ(replay(scenario, {"--log", "--compare", "e.jsonl"}).status, 0);

    write("e.jsonl", expected.replace(expected.find("fix to right"), 12, "fix to left"));
    EXPECT_EQ(replay(scenario, {"--compare", "e.jsonl"}).status, 0);
    auto const result = replay(scenario, {"--log", "--compare", "e.jsonl"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, testing::HasSubstr("correctTgCropRegion: log[0].text: expected"));

    write("e.jsonl", expected.insert(expected.find("{\"sink\""), "{}, "));
    EXPECT_THAT(replay(scenario, {"--log", "--compare", "e.jsonl"}).err,
                testing::HasSubstr("correctTgCropRegion: log: expected [{}, {"));
}

}  // namespace
}  // namespace zoomreplay::test
