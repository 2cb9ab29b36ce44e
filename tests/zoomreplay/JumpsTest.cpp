// --jumps: where the picture jumps, in long scenarios. Short ones are in views/.
#include <sstream>

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

constexpr int kRequests = 1000;
constexpr int kPlanted = 617;

/// What is wrong with one crop, and when.
struct Fault {
    double width = 1.0;
    int right = 0;
    int last = kPlanted;
};

/// A zoom ramp over two sensors with custom crops, 0.4 % a request. The crops of sensor 2 are
/// faulty from request 617 to the last one.
std::string smoothRamp(Fault const& fault) {
    std::ostringstream scenario;
    scenario
        << kSensor
        << R"({"op":"sensor","id":2,"modes":{"1":{"size":[2028,1520],"window":[0,0,4056,3040]}}}
{"op":"initialize","mode":3}
{"op":"configSensorInfo","sensorIds":[0,2],"sensorInfos":{"0":{"degreeH":68.46,"degreeV":41.9,"activeArray":[0,0,4608,2592]},"2":{"degreeH":22.23,"degreeV":16.75,"activeArray":[0,0,4056,3040]}}}
)";
    double zoom = 1.0;
    for (int request = 1; request <= kRequests; ++request, zoom *= 1.002) {
        auto const crop = [&](int number, double w, double h, int right, double part) {
            scenario << number << ',' << static_cast<int>((w - w * part / zoom) / 2) + right << ','
                     << static_cast<int>((h - h / zoom) / 2) << ','
                     << static_cast<int>(w * part / zoom) << ',' << static_cast<int>(h / zoom);
        };
        bool const isFaulty = request >= kPlanted && request <= fault.last;
        scenario
            << R"({"op":"setRunTimeCropNeedData","requestNo":)" << request
            << R"(,"sensorModes":{"0":1,"2":1},"streamSizes":{"0x70010000000000":[64,48],"0x70010200000000":[64,48]}})"
            << '\n'
            << R"({"op":"storeOverrideSetting","metadata":{"zoomRatio":)" << zoom
            << R"(,"customStreamCrops":[)";
        crop(0, 4608, 2592, 0, 1.0);
        scenario << ',';
        crop(2, 4056, 3040, isFaulty ? fault.right : 0, isFaulty ? fault.width : 1.0);
        scenario << R"(]},"streamIdMap":{"0":"0x70010000000000","2":"0x70010200000000"}})" << '\n'
                 << R"({"op":"getP1CropSetting","requestNo":)" << request << R"(,"zoomRatio":)"
                 << zoom * 1.01 << "}\n"
                 << R"({"op":"onRequestDone","requestNo":)" << request << "}\n";
    }
    return scenario.str();
}

class JumpsTest : public ToolTest {
 protected:
    std::string jumps(std::string const& scenario,
                      std::vector<std::string> const& more = {}) const {
        write("s.jsonl", scenario);
        std::vector<std::string> arguments{"s.jsonl", "--jumps"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        auto const result = run(arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        return result.out;
    }
};

TEST_F(JumpsTest, ARampThatTheRatioExplainsHasNone) {
    EXPECT_EQ(jumps(smoothRamp({})), "No jumps: the picture moves with the asked ratio.\n");
}

// 70 pixels of 4056, behind a lens of 22.23 degrees: atan(2 tan(11.115) 70 / 4056) = 0.39 degrees,
// but for half a pixel of the sensor's mode.
TEST_F(JumpsTest, FindsTheOneCropThatIsTooNarrowAndAside) {
    EXPECT_THAT(jumps(smoothRamp({0.94, 70, kPlanted})),
                testing::MatchesRegex("   line    request  jump\n"
                                      "   2471        617  sensor 2 narrower by (5.9|6.0|6.1) %, "
                                      "0.(38|39) degrees to the right, and back in the next "
                                      "request\n"));
}

// There and back are two findings when the way back comes later.
TEST_F(JumpsTest, ListsAsManyAsWanted) {
    std::string const all = jumps(smoothRamp({1.06, 0, 700}));
    EXPECT_THAT(all, testing::HasSubstr("617  sensor 2 wider by 5."));
    EXPECT_THAT(all, testing::HasSubstr("701  sensor 2 narrower by 5."));
    EXPECT_THAT(jumps(smoothRamp({1.06, 0, 700}), {"--limit", "1", "-o", "r.jsonl"}),
                testing::EndsWith("\nand 1 more\n"));
    EXPECT_EQ(read("r.jsonl"), outputOf(run({"s.jsonl", "-o", "-"})));
}

// More than are kept: the asking sensor, which shows less or more, changes with each request. The
// queries come when sixty more requests are done.
TEST_F(JumpsTest, CountsThemAll) {
    std::ostringstream scenario;
    scenario << R"({"op":"initialize","mode":1}
{"op":"configSensorInfo","sensorIds":[0,1,2],"sensorInfos":{"0":{"degreeH":68,"degreeV":42,"activeArray":[0,0,4000,3000]},"2":{"degreeH":1,"degreeV":1,"activeArray":[0,0,4000,3000]},"1":{"degreeH":30,"degreeV":20,"activeArray":[0,0,4000,3000]}}}
{"op":"setRunTimeCropNeedData","requestNo":0,"sensorModes":{"0":1,"1":1,"2":1}}
)";
    for (int request = 1; request <= 2561; ++request) {
        scenario << R"({"op":"setRunTimeCropNeedData","notice":"repeating","requestNo":)" << request
                 << "}\n"
                 << R"({"op":"onRequestDone","requestNo":)" << request << "}\n";
        if (request > 60) {
            scenario << R"({"op":"getP1CropSetting","zoomRatio":1,"requestNo":)" << request - 60
                     << ",\"sensorId\":" << (request == 1560 ? 2 : request % 2) << "}\n";
        }
    }
    auto const list = jumps(scenario.str());

    // tan 15 / tan 0.5 of the width that sensor 2 shows, which is asked once; tan 34 /
    // tan 15 of the width that sensor 1 shows, and back.
    EXPECT_THAT(list, testing::StartsWith("   line    request  jump\n   4626       1501  from "
                                          "sensor 2 to 1: wider by 2970.4 %\n"));
    EXPECT_THAT(list, testing::HasSubstr("from sensor 1 to 0: wider by 151.7 %\n"));
    EXPECT_THAT(list, testing::EndsWith("\nand 2490 more\n"));
    EXPECT_THAT(jumps(scenario.str(), {"--limit", "5000"}), testing::EndsWith("\nand 1500 more\n"));
}

}  // namespace
}  // namespace zoomreplay::test
