// What a report's page carries.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "PageData.h"
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

// An IMX708 whose mode reads the whole array at half its scale, and a wider sensor beside it.
constexpr std::string_view kExternal =
    R"({"op":"sensor","id":0,"modes":{"1":{"size":[2304,1296],"window":[0,0,4608,2592]}}}
{"op":"sensor","id":1,"modes":{"1":{"size":[2304,1296],"window":[0,0,4608,2592]}}}
{"op":"initialize","mode":"ExternalAPI"}
{"op":"configSensorInfo","sensorIds":[0,1],"sensorInfos":{"0":{"degreeH":90,"degreeV":60,"activeArray":[0,0,4608,2592]},"1":{"degreeH":120,"degreeV":90,"activeArray":[0,0,4608,2592]}}}
{"op":"configSensorBehaviorInfo","portSizes":{"0":{"1":[2304,1296]},"1":{"1":[2304,1296]}}}
)";

class ReportTest : public ToolTest {
 protected:
    json dataOf(std::string const& file) const { return pageData(read(file)); }

    json report(std::string const& scenario, std::vector<std::string> more = {}) const {
        more.insert(more.end(), {"--report", "r.html"});
        replay(scenario, more);
        return dataOf("r.html");
    }
};

std::string deposit(int requestNo, std::string const& more = R"(,"sensorModes":{"0":1,"1":1})") {
    return R"({"op":"setRunTimeCropNeedData","requestNo":)" + std::to_string(requestNo) + more +
           "}\n";
}

std::string ask(std::string const& stage, int requestNo, std::string const& ratio,
                std::string const& more = "") {
    return R"({"op":"get)" + stage + R"(CropSetting","requestNo":)" + std::to_string(requestNo) +
           R"(,"zoomRatio":)" + ratio + more + "}\n";
}

std::string done(int requestNo) {
    return R"({"op":"onRequestDone","requestNo":)" + std::to_string(requestNo) + "}\n";
}

std::string publish(std::string const& ratio) {
    return R"({"op":"publish","enable":true,"zoomRatio":)" + ratio + "}\n";
}

// One stream of 640x360 at port 0x7001 and a custom crop for it.
std::string instant(int requestNo, std::string const& crop) {
    return deposit(requestNo,
                   R"(,"sensorModes":{"0":1},"streamSizes":{"0x70010000000000":[640,360]})") +
           R"({"op":"storeOverrideSetting","metadata":{"zoomRatio":1,"customStreamCrops":[0,)" +
           crop + R"(]},"streamIdMap":{"0":"0x70010000000000"}})" + "\n";
}

// What a phone reports of a request comes after it is done. Only lenses with a number have a lane.
TEST_F(ReportTest, TellsWhatThePhoneObserved) {
    auto const data = report(
        deposit(1) + ask("P1", 1, "4") + done(1) + deposit(2) + done(2) +
        R"({"op":"observed","requestNo":1,"zoomRatio":2.5,"activePhysicalId":"5","cropRegion":[1,2,30,40]}
{"op":"observed","requestNo":2,"activePhysicalId":"back"}
{"op":"observed","requestNo":3,"activePhysicalId":"6"}
)");

    EXPECT_EQ(data["requests"][0]["phone"],
              json({{"zoom", 2.5}, {"lens", "5"}, {"region", {1, 2, 30, 40}}}));
    EXPECT_EQ(data["overview"][0]["phone"], json({{"zoom", 2.5}, {"lens", 5}}));
    EXPECT_EQ(data["requests"][1]["phone"], json({{"lens", "back"}}));
    EXPECT_EQ(data["requests"].size(), 2U);
}

// Sensor 0: half of the width at 90 degrees, 2 atan(1 / 2) = 53.130; half of the height at 60,
// 2 atan(tan 30 / 2) = 32.204. Sensor 1: tan 60 = 1.73205, so 4608 / (1.73205 * 2) = 1330.2, in TG
// 665: 2 atan(1.73205 * 1330 / 4608) = 2 atan 0.499919 = 53.123; tan 45 / tan 30 = 1.73205,
// 2592 / 3.4641 = 748.2, in TG 374: 2 atan(748 / 2592) = 32.194.
TEST_F(ReportTest, TellsTheAnglesThatTgCropsLeave) {
    auto const data =
        report(std::string(kExternal) + publish("2") + deposit(1) + ask("P1", 1, "4"));

    auto const& crops = data["requests"][0]["queries"][0]["crops"];
    ASSERT_EQ(crops.size(), 2U);
    EXPECT_EQ(crops[0]["c"], json({576, 324, 1152, 648}));
    EXPECT_EQ(crops[0]["p"], json({0x7001, 0x7002}));
    EXPECT_NEAR(crops[0]["deg"][0], 53.130, 0.005);
    EXPECT_NEAR(crops[0]["deg"][1], 32.204, 0.005);
    EXPECT_EQ(crops[0]["diff"], json({0.0, 0.0}));
    EXPECT_NEAR(crops[1]["deg"][0], 53.123, 0.005);
    EXPECT_NEAR(crops[1]["deg"][1], 32.194, 0.005);
    EXPECT_NEAR(crops[1]["diff"][0], -0.007, 0.005);
    EXPECT_EQ(data["rigs"][0]["master"], 0);
}

// P2 crops of this mode stay in the active array: 4608 / 1.5 = 3072 and 1728 at (768, 432) exceed
// the mode's 2304x1296 and shrink to it, the upper left quarter: from 45 degrees to the axis, its
// centre atan(1 / 2) = 26.565 off it.
TEST_F(ReportTest, TellsTheAnglesAndTheRequestOfP2CropsInTheActiveArray) {
    auto const data =
        report(std::string(kExternal) + publish("1.5") + deposit(1) + ask("P2", 1, "1"));

    auto const& crop = data["requests"][0]["queries"][0]["crops"][0];
    EXPECT_EQ(crop["c"], json({0, 0, 2304, 1296}));
    EXPECT_EQ(crop["asked"], json({768, 432, 3072, 1728}));
    EXPECT_FALSE(crop.contains("tg"));
    EXPECT_NEAR(crop["deg"][0], 45.0, 0.005);
    EXPECT_NEAR(crop["deg"][1], 30.0, 0.005);
    EXPECT_NEAR(crop["centre"][0], -26.565, 0.005);
}

TEST_F(ReportTest, TellsWhatWasAskedForOnlyWhereItWasCorrected) {
    auto const data = report(std::string(kSensor) +
                             R"({"op":"initialize","mode":"InstantRequest"})"
                             "\n" +
                             instant(1, "3000,2000,800,450") + ask("P1", 1, "2") +   // too small
                             instant(2, "1000,501,1501,1001") + ask("P1", 2, "2"));  // only cut

    auto const& small = data["requests"][0]["queries"][0]["crops"][0];
    EXPECT_EQ(small["asked"], json({1500, 1000, 400, 225}));
    EXPECT_EQ(small["min"], json({640, 360}));
    auto const& fitting = data["requests"][1]["queries"][0]["crops"][0];
    EXPECT_EQ(fitting["c"], json({500, 250, 750, 500}));
    EXPECT_FALSE(fitting.contains("asked"));
}

// The manager reads the property when it is created, and an unknown mode leaves it without a
// strategy.
TEST_F(ReportTest, LearnsFromTheLibraryWhetherAnswersAreKept) {
    std::string const asked = deposit(1) + ask("P1", 1, "4") + ask("P1", 1, "4");
    std::string const create = R"({"op":"getZoomOverrideMode"})"
                               "\n";
    std::string const close =
        R"({"op":"property","name":"vendor.debug.camera.zoomOverride.closeP1Override","value":1})"
        "\n";
    auto const isCached = [this](std::string const& scenario) {
        return report(scenario)["requests"][0]["queries"][1].contains("cached");
    };

    EXPECT_TRUE(isCached(create + close + std::string(kExternal) + publish("2") + asked));
    EXPECT_FALSE(isCached(close + std::string(kExternal) + publish("2") + asked));
    EXPECT_FALSE(isCached(R"({"op":"initialize","mode":9})"
                          "\n" +
                          asked));
}

TEST_F(ReportTest, KeepsToTheRequestsOfARange) {
    std::string scenario = std::string(kExternal) + publish("2");
    for (int i = 1; i <= 9; ++i) {
        scenario += deposit(i) + ask("P1", i, "4") + done(i);
    }
    auto const data = report(scenario, {"--requests", "3-4"});

    ASSERT_EQ(data["requests"].size(), 2U);
    EXPECT_EQ(data["requests"][0]["no"], 3);
    EXPECT_EQ(data["requests"][1]["no"], 4);
    EXPECT_EQ(data["total"], 9);
}

TEST_F(ReportTest, AFatalConditionStandsAtItsRequest) {
    write("s.jsonl", std::string(kExternal) + deposit(1) + deposit(2) + ask("3A", 1, "2"));
    auto const run = this->run({"s.jsonl", "-o", "-", "--report", "r.html", "--trace", "t.json"});

    EXPECT_EQ(run.status, 3);
    auto const data = dataOf("r.html");
    EXPECT_EQ(data["fatal"]["line"], 8);
    EXPECT_EQ(data["fatal"]["at"], 0);
    EXPECT_EQ(data["requests"][0]["queries"][0]["state"], "fatal");
    EXPECT_TRUE(json::accept(read("t.json")));
}

TEST_F(ReportTest, ABadLineStillGivesTheReportOfTheLinesBefore) {
    auto const data = report(std::string(kExternal) + publish("2") + deposit(1) +
                             ask("P1", 1, "4") + R"({"op":"nonsense"})");

    EXPECT_EQ(data["requests"][0]["queries"][0]["state"], "overridden");
}

// Of objects, which the system puts elsewhere in each process.
std::string withoutAddresses(std::string const& log) {
    static std::regex const kAddress("0x[0-9a-f]{8,}");
    return std::regex_replace(log, kAddress, "0x");
}

// The report asks a mapper of its own what was wanted; none of that may be seen.
TEST_F(ReportTest, ResultsAndLogAreTheSameWithAReport) {
    std::string const scenario = R"({"op":"logger","detailsLevel":5})"
                                 "\n" +
                                 std::string(kExternal) + publish("2") + deposit(1) +
                                 ask("P1", 1, "4") + ask("P2", 1, "1");
    auto const plain = replay(scenario, {"--log"});
    auto const reported = replay(scenario, {"--log", "--report", "r.html"});

    EXPECT_TRUE(withoutAddresses(reported.out) == withoutAddresses(plain.out));
    EXPECT_THAT(dataOf("r.html")["requests"].dump(), HasSubstr("appCropRegion"));
}

TEST_F(ReportTest, TextsOfTheScenarioCannotLeaveTheData) {
    std::string const name = "<!--<script>\u2028.jsonl";
    write(name, std::string(kSensor) + deposit(1));
    run({name, "-o", "out", "--report", "r.html"});

    EXPECT_THAT(read("r.html"), Not(HasSubstr("<!--")));
    EXPECT_EQ(dataOf("r.html")["scenario"], name);
}

// A zoom there and back. What is packed in columns must not need a page per request.
TEST_F(ReportTest, AThousandRequestsOfThreeSensorsAndFourPortsAreASmallPage) {
    std::string scenario;
    for (int sensor = 0; sensor < 3; ++sensor) {
        scenario += R"({"op":"sensor","id":)" + std::to_string(sensor) +
                    R"(,"modes":{"1":{"size":[2304,1296],"window":[0,0,4608,2592]}}})" + "\n";
    }
    scenario += R"({"op":"initialize","mode":"ExternalAPI"}
{"op":"configSensorInfo","sensorIds":[0,1,2],"sensorInfos":{"0":{"degreeH":90,"degreeV":60,"activeArray":[0,0,4608,2592]},"1":{"degreeH":120,"degreeV":90,"activeArray":[0,0,4608,2592]},"2":{"degreeH":60,"degreeV":40,"activeArray":[0,0,4608,2592]}}}
{"op":"configFspInfo","fspPorts":{"0":28673,"1":28674}}
{"op":"configSensorBehaviorInfo","portSizes":{"0":{"1":[2304,1296],"2":[640,480]},"1":{"1":[2304,1296]},"2":{"1":[2304,1296]}}}
)";
    for (int i = 1; i <= 1000; ++i) {
        auto const ratio = std::to_string(2.0 + std::abs(i - 500) / 250.0);
        scenario += publish(ratio) + deposit(i, R"(,"sensorModes":{"0":1,"1":1,"2":1})") +
                    ask("P1", i, "9") + ask("P2", i, "9") + done(i);
    }
    auto const data = report(scenario);

    EXPECT_EQ(data["requests"].size(), 1000U);
    EXPECT_LT(read("r.html").size(), 400'000U);
}

// Requests end in another order than they were deposited in; what is in flight longest, last.
TEST_F(ReportTest, KeepsTheOrderOfTheDeposits) {
    std::string scenario = std::string(kExternal) + publish("2");
    for (int i = 1; i <= 1500; ++i) {
        scenario += deposit(i) + ask("P1", i, std::to_string(2 + i)) + (i == 3 ? "" : done(i));
    }
    auto const data = report(scenario + done(3));

    ASSERT_EQ(data["requests"].size(), 1500U);
    for (size_t i = 0; i < 1500; ++i) {
        ASSERT_EQ(data["requests"][i]["no"], i + 1);
        ASSERT_EQ(data["requests"][i]["queries"][0]["asked"], i + 3);
        ASSERT_EQ(data["overview"][i]["asked"], i + 3);
    }
}

TEST_F(ReportTest, WithoutScriptsShowsFindingsAndTheFirstHundredRequests) {
    std::string scenario = std::string(kExternal) + publish("1.5");
    for (int i = 1; i <= 120; ++i) {
        scenario += deposit(i) + ask("P2", i, "1") + (i < 7 ? "" : done(i));
    }
    report(scenario);

    std::string const page = read("r.html");
    auto const plain = page.substr(page.find("<div id=\"plain\">"), 30'000);
    EXPECT_THAT(plain, HasSubstr("<li>crop corrected: 120 requests, first 1</li>"));
    EXPECT_THAT(plain, HasSubstr("<li>never done: 6 requests, first 1</li>"));
    EXPECT_THAT(plain, HasSubstr("<tr><td>100</td><td>1</td><td>1.5</td>"));
    EXPECT_THAT(plain, Not(HasSubstr("<tr><td>101</td>")));
    EXPECT_THAT(plain, HasSubstr("The first 100 of 120 requests"));
}

}  // namespace
}  // namespace zoomreplay::test
