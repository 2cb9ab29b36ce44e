// import-rig: sensor lines out of a phone's own description. Angles of view are worked out with
// 40 digits and rounded to the nearest float.
#include "ToolTest.h"

#include <sstream>
#include <stdexcept>

namespace zoomreplay::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

// One camera as it is printed, and its rig.
constexpr std::string_view kDump =
    "== Camera HAL device device@3.7/legacy/7 (v3.7) static information: ==\n"
    "  API2 camera characteristics:\n"
    "      android.lens.info.availableFocalLengths (90002): float[1]\n"
    "        [2.16000009 ]\n"
    "      android.sensor.info.activeArraySize (f0000): int32[4]\n"
    "        [4 4 4081 3073 ]\n"
    "      android.sensor.info.physicalSize (f0005): float[2]\n"
    "        [5.23263979 3.94239998 ]\n";
constexpr std::string_view kSensorLine =
    R"({"op": "sensor", "id": 7, "modes": {"0": {"size": [4081, 3073], "window": [4, 4, 4081, 3073]}}})"
    "\n";
constexpr std::string_view kConfigLine =
    R"({"op": "configSensorInfo", "sensorIds": [7], "sensorInfos": {"7": {"degreeH": 100.91471, "degreeV": 84.766685, "activeArray": [4, 4, 4081, 3073]}}})"
    "\n";

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    auto const begin = text.find(from);
    if (begin == std::string::npos) {
        throw std::invalid_argument("the dump lacks " + std::string(from));
    }
    return text.replace(begin, from.size(), to);
}

class ImportRigTest : public ToolTest {
 protected:
    ToolRun import(std::string_view dump, std::vector<std::string> const& more = {}) const {
        write("dump.txt", dump);
        std::vector<std::string> arguments{"import-rig", "dump.txt"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }

    static std::string phone(char const* name) { return std::string(PHONES) + '/' + name; }

    /// The lines of a rig without its comments.
    static std::string withoutComments(std::string const& rig) {
        std::istringstream lines(rig);
        std::string result;
        for (std::string line; std::getline(lines, line);) {
            result += line.substr(0, 2) == "//" ? "" : line + '\n';
        }
        return result;
    }
};

// Two equal cameras behind a logical one, one of them hidden, and a front camera. Byte order mark,
// CRLF; an array that does not begin at (0, 0); a request with a tag of the same name.
TEST_F(ImportRigTest, PhoneWithTwoEqualCameras) {
    auto const rig = run({"import-rig", phone("stereo.txt")});

    EXPECT_EQ(rig.status, 0);
    EXPECT_EQ(rig.err, "");
    EXPECT_EQ(
        withoutComments(rig.out),
        R"({"op": "sensor", "id": 0, "modes": {"0": {"size": [4080, 3072], "window": [4, 4, 4080, 3072]}}}
{"op": "sensor", "id": 1, "modes": {"0": {"size": [3264, 2448], "window": [0, 0, 3264, 2448]}}}
{"op": "sensor", "id": 2, "modes": {"0": {"size": [4080, 3072], "window": [4, 4, 4080, 3072]}}}
{"op": "configSensorInfo", "sensorIds": [0, 2], "sensorInfos": {"0": {"degreeH": 100.91471, "degreeV": 84.766685, "activeArray": [4, 4, 4080, 3072]}, "2": {"degreeH": 100.91471, "degreeV": 84.766685, "activeArray": [4, 4, 4080, 3072]}}}
)");
    EXPECT_THAT(rig.out, AllOf(HasSubstr("physical camera 2 of camera 3"),
                               HasSubstr("physical cameras 0, 2, zooms from 1 to 10."),
                               HasSubstr("The master is sensor 0: the first with the focal length "
                                         "and physical size of camera 3.")));
}

// Three hidden cameras; the main one is the second. A front camera with two focal lengths.
TEST_F(ImportRigTest, PhoneWithThreeHiddenCameras) {
    auto const rig = run({"import-rig", phone("triple.txt"), "-o", "rig.jsonl"});

    EXPECT_EQ(rig.status, 0);
    EXPECT_THAT(rig.err, testing::EndsWith("triple.txt: camera 1 is left out: several focal "
                                           "lengths, so that its angles of view are not known\n"));
    EXPECT_EQ(
        withoutComments(read("rig.jsonl")),
        R"({"op": "sensor", "id": 2, "modes": {"0": {"size": [4000, 3000], "window": [8, 0, 4000, 3000]}}}
{"op": "sensor", "id": 5, "modes": {"0": {"size": [4080, 3060], "window": [0, 0, 4080, 3060]}}}
{"op": "sensor", "id": 6, "modes": {"0": {"size": [3648, 2736], "window": [0, 0, 3648, 2736]}}}
{"op": "configSensorInfo", "sensorIds": [5, 2, 6], "sensorInfos": {"5": {"degreeH": 73.976364, "degreeV": 58.926212, "activeArray": [0, 0, 4080, 3060]}, "2": {"degreeH": 104.78529, "degreeV": 88.46938, "activeArray": [8, 0, 4000, 3000]}, "6": {"degreeH": 17.121778, "degreeV": 12.8832, "activeArray": [0, 0, 3648, 2736]}}}
)");
}

TEST_F(ImportRigTest, CamerasAndMasterCanBeChosen) {
    auto const sensorIds = [&](std::vector<std::string> const& options) {
        std::vector<std::string> arguments{"import-rig", phone("stereo.txt")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        auto const rig = run(arguments).out;
        auto const begin = rig.find("\"sensorIds\": ") + 13;
        return rig.substr(begin, rig.find(']', begin) + 1 - begin);
    };

    EXPECT_EQ(sensorIds({"--master", "2"}), "[2, 0]");
    EXPECT_EQ(sensorIds({"--cameras", "1"}), "[1]");
    EXPECT_EQ(sensorIds({"--cameras", "1,2"}), "[1, 2]");
    EXPECT_EQ(sensorIds({"--cameras", "1,3"}), "[0, 1, 2]");
    EXPECT_EQ(sensorIds({"--cameras", "3", "--master", "2"}), "[2, 0]");
}

// The pixel that an odd array has left over is not read out.
TEST_F(ImportRigTest, BinnedModeReadsWholePairs) {
    EXPECT_THAT(import(kDump, {"--binned"}).out,
                HasSubstr(R"("1": {"size": [2040, 1536], "window": [4, 4, 4080, 3072]}}})"));
}

TEST_F(ImportRigTest, NumbersWithoutRoomInAStreamIdAreReplaced) {
    std::string const dump = replaced(std::string(kDump), "legacy/7", "legacy/0") +
                             replaced(std::string(kDump), "legacy/7", "external/256") +
                             replaced(std::string(kDump), "legacy/7", "legacy/back") +
                             replaced(std::string(kDump), "legacy/7", "legacy/1");
    EXPECT_THAT(import(dump).out,
                AllOf(HasSubstr("Sensor 0 is camera 0:"), HasSubstr("Sensor 2 is camera 256:"),
                      HasSubstr("Sensor 3 is camera back:"), HasSubstr("Sensor 1 is camera 1:")));
}

struct Change {
    char const* name;
    std::string_view from;
    std::string_view to;
    std::string_view complaint;  ///< what is said of camera 7; empty when nothing is wrong
};

void PrintTo(Change const& change, std::ostream* out) {
    *out << change.name;
}

class ChangedDumpTest : public ImportRigTest, public testing::WithParamInterface<Change> {};

// A second camera stays whole, so that there is a rig to look at.
TEST_P(ChangedDumpTest, IsUsedOrToldAndLeftOut) {
    auto const& [name, from, to, complaint] = GetParam();
    std::string const dump = replaced(std::string(kDump), from, to);
    auto const result = import(dump + replaced(std::string(kDump), "legacy/7", "legacy/8"));

    EXPECT_EQ(result.status, 0);
    if (complaint.empty()) {
        EXPECT_EQ(result.err, "");
        EXPECT_THAT(result.out, AllOf(HasSubstr(kSensorLine), HasSubstr(kConfigLine)));
    } else {
        EXPECT_EQ(result.err, "dump.txt: camera 7" + std::string(complaint) + "\n");
        EXPECT_THAT(result.out, AllOf(testing::Not(HasSubstr("Sensor 7")), HasSubstr("Sensor 8")));
    }
}

constexpr std::string_view kFocalLengths = "android.lens.info.availableFocalLengths";
constexpr std::string_view kNoFocalLengths =
    " is left out: android.lens.info.availableFocalLengths cannot be read";
constexpr std::string_view kNoArray =
    " is left out: android.sensor.info.activeArraySize cannot be read";
constexpr std::string_view kEmptyArray =
    " is left out: android.sensor.info.activeArraySize is no area";

// Makes camera 7 a logical one of camera 5, in the place of a line that nobody needs.
constexpr std::string_view kTitle = "  API2 camera characteristics:\n";
constexpr std::string_view kPhysicalIds =
    "      android.logicalMultiCamera.physicalIds (1a0000): byte[2]\n        [53 0 ]\n";

Change const kChanges[] = {
    {"unchanged", "API2", "API2", ""},
    {"values wrapped", "[4 4 4081 3073 ]", "[4 4\n        4081 3073 ]", ""},
    {"values wrapped, each line in brackets", "[4 4 4081 3073 ]", "[4 4 ]\n[4081 3073 ]", ""},
    {"a tag with a longer name", "android.lens.info.a",
     "android.lens.info.availableFocalLengthsOfNobody (1): float[1]\n[9 ]\nandroid.lens.info.a",
     ""},
    {"tag missing", kFocalLengths, "android.lens.info.focalLengths",
     " is left out: no android.lens.info.availableFocalLengths"},
    {"values missing", "[4 4 4081 3073 ]", "", kNoArray},
    {"fewer values than announced", "[4 4 4081 3073 ]", "[4 4 4081 ]", kNoArray},
    {"more values than announced", "[4 4 4081 3073 ]", "[4 4 4081 3073 1 ]", kNoArray},
    {"another type", "int32[4]", "int64[4]", kNoArray},
    {"values beyond the type", "[4 4 4081 3073 ]", "[4 4 4294967296 3073 ]", kNoArray},
    {"no whole numbers", "[4 4 4081 3073 ]", "[4 4 4081.5 3073 ]", kNoArray},
    {"empty array", "[4 4 4081 3073 ]", "[4 4 0 3073 ]", kEmptyArray},
    {"negative origin", "[4 4 4081 3073 ]", "[-4 4 4081 3073 ]", kEmptyArray},
    {"array beyond all coordinates", "[4 4 4081 3073 ]", "[4 4 2147483647 3073 ]", kEmptyArray},
    {"floats without separator", "float[1]\n        [2.16000009 ]",
     "float[2]\n        [2.160000094.38000011 ]", kNoFocalLengths},
    {"not finite", "[2.16000009 ]", "[1e99 ]", kNoFocalLengths},
    {"focal length of an unknown lens", "[2.16000009 ]", "[0.00000000 ]",
     " is left out: android.lens.info.availableFocalLengths is no length"},
    {"flat sensor", "5.23263979 3.94239998", "5.23263979 0.00000000",
     " is left out: android.sensor.info.physicalSize is no area"},
    {"two things wrong", "[2.16000009 ]\n      android.sensor.info.a",
     "[x ]\n      android.sensor.info.preCorrectionA",
     " is left out: no android.sensor.info.activeArraySize; "
     "android.lens.info.availableFocalLengths cannot be read"},
    {"ids without end", kTitle,
     "android.logicalMultiCamera.physicalIds (1a0000): byte[2]\n[53 54 ]\n",
     " is left out: android.logicalMultiCamera.physicalIds cannot be read"},
    {"ids of a camera that is not there", kTitle, kPhysicalIds,
     ": no characteristics of its physical camera 5"},
};
INSTANTIATE_TEST_SUITE_P(All, ChangedDumpTest, testing::ValuesIn(kChanges));

struct Failure {
    std::string dump;
    std::vector<std::string> options;
    char const* message;
};

void PrintTo(Failure const& failure, std::ostream* out) {
    *out << failure.message;
}

class UnusableDumpTest : public ImportRigTest, public testing::WithParamInterface<Failure> {};

TEST_P(UnusableDumpTest, HasStatusTwoAndKeepsTheOutputFile) {
    write("rig.jsonl", "old");
    auto options = GetParam().options;
    options.insert(options.end(), {"-o", "rig.jsonl"});
    auto const result = import(GetParam().dump, options);

    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr(GetParam().message));
    EXPECT_EQ(read("rig.jsonl"), "old");
}

Failure const kFailures[] = {
    {"", {}, "dump.txt: has no characteristics of cameras\n"},
    {"error: no devices\n", {}, "dump.txt: has no characteristics of cameras\n"},
    {"\xFF\xFE=", {}, "dump.txt: is UTF-16, as some shells write; save it as UTF-8\n"},
    {replaced(std::string(kDump), "float[1]", "float[2]"),
     {},
     "is left out: android.lens.info.availableFocalLengths cannot be read\n"
     "dump.txt: has no camera that can be used\n"},
    {replaced(std::string(kDump), "static information", "dumpState"),
     {},
     "dump.txt: has no characteristics of cameras\n"},
    {std::string(kDump), {"--cameras", "1"}, "dump.txt: has no camera 1, only 7\n"},
    {std::string(kDump), {"--master", "1"}, "camera 1 cannot be the master, only one of 7\n"},
    {replaced(std::string(kDump), kTitle, kPhysicalIds) +
         replaced(replaced(std::string(kDump), "legacy/7", "legacy/5"), "2.16000009", "2.2"),
     {},
     "dump.txt: camera 7: none of its physical cameras that can be used (5) has its focal length "
     "and physical size; choose the main one with --master\n"},
    {std::string(kDump), {"--fast"}, "--fast: unknown option\n"},
};
INSTANTIATE_TEST_SUITE_P(All, UnusableDumpTest, testing::ValuesIn(kFailures));

TEST_F(ImportRigTest, HelpTellsWhatToTypeOnAPhone) {
    auto const help = run({"import-rig", "--help"});

    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("adb shell dumpsys media.camera > dump.txt"));
}

TEST_F(ImportRigTest, BrokenByteNeverCrashesTheImport) {
    constexpr std::string_view kBytes("]9\xFF-=\0[e\n ", 10);
    std::string const dump = replaced(std::string(kDump), kTitle, kPhysicalIds) +
                             "  Physical camera 5 characteristics:\n" +
                             std::string(kDump.substr(kDump.find("  android.lens")));
    for (size_t i = 0; i < dump.size(); i += 3) {
        std::string broken = dump;
        broken[i] = kBytes[i % kBytes.size()];
        auto const result = import(broken);
        EXPECT_THAT(result.status, testing::AnyOf(0, 2)) << "byte " << i << "\n" << result.err;
        if (result.status == 0) {
            EXPECT_EQ(replay(result.out).status, 0) << "byte " << i << "\n" << result.out;
        }
    }
}

}  // namespace
}  // namespace zoomreplay::test
