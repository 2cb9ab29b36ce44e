// import-rig: sensor lines out of a phone's own description. Angles of view are worked out with
// 40 digits and rounded to the nearest float.
#include "ToolTest.h"

#include <fstream>
#include <iterator>
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

// What one form of text becomes.
struct Form {
    char const* file;
    std::vector<std::string> options;
    std::string_view sensors;             ///< ids of the sensor lines, in their order
    std::string_view rig;                 ///< the lines from the configuration on
    std::vector<std::string_view> notes;  ///< are in comments
};

void PrintTo(Form const& form, std::ostream* out) {
    *out << form.file;
}

class FormTest : public ImportRigTest, public testing::WithParamInterface<Form> {};

TEST_P(FormTest, BecomesARigThatStreams) {
    auto const& [file, options, sensors, rig, notes] = GetParam();
    std::vector<std::string> arguments{"import-rig", phone(file)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    auto const result = run(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");

    std::string ids;
    constexpr std::string_view kSensorOp = R"("op": "sensor", "id": )";
    for (auto at = result.out.find(kSensorOp); at != std::string::npos;
         at = result.out.find(kSensorOp, at + 1)) {
        auto const begin = at + kSensorOp.size();
        ids += result.out.substr(begin, result.out.find(',', begin) - begin) + ' ';
    }
    EXPECT_EQ(ids, sensors);
    auto const plain = withoutComments(result.out);
    EXPECT_EQ(plain.substr(plain.find(R"({"op": "configSensorInfo")")), rig);
    for (auto const note : notes) {
        EXPECT_THAT(result.out, HasSubstr(note));
    }

    write("rig.jsonl", result.out);
    for (char const* mode : {"ExternalAPI", "ByRequest", "InstantRequest"}) {
        auto const scenario =
            run({"import-watch", phone("watch.log"), "--rig", "rig.jsonl", "--mode", mode});
        EXPECT_EQ(scenario.err, "") << mode;
        auto const results = replay(scenario.out);
        EXPECT_EQ(results.status, 0) << mode << '\n' << results.err;
        EXPECT_THAT(results.out, AllOf(HasSubstr("\"overrideValid\": true"),
                                       testing::Not(HasSubstr("\"exception\""))))
            << mode;
    }
}

// The lenses are of 4, 8, 16 and 32 mm behind 8 x 6 mm: half the angles have the tangents 1 and
// 0.75, and so on. The first is read out in 4000 of 4100 columns of 8.2 mm.
Form const kForms[] = {
    // Characters for ids, a front camera first, and a session with a stream of its own for 58.
    {"characters.txt",
     {},
     "1 58 56 52 54 ",
     R"({"op": "configSensorInfo", "sensorIds": [56, 58, 52, 54], "sensorInfos": {"56": {"degreeH": 53.130104, "degreeV": 41.11209, "activeArray": [0, 0, 4000, 3000]}, "58": {"degreeH": 90, "degreeV": 73.73979, "activeArray": [0, 0, 4000, 3000]}, "52": {"degreeH": 28.072487, "degreeV": 21.239311, "activeArray": [0, 0, 4000, 3000]}, "54": {"degreeH": 14.250032, "degreeV": 10.71165, "activeArray": [0, 0, 4000, 3000]}}}
{"op": "setRunTimeCropNeedData", "requestNo": 0, "sensorModes": {"52": 0, "54": 0, "56": 0, "58": 0}, "streamSizes": {"0x70013400000000": [1920, 1440], "0x70013600000000": [1920, 1440], "0x70013800000000": [1920, 1440], "0x70013a00000000": [1920, 1440], "0x70013a00000001": [4000, 3000]}}
)",
     {"Sensor 58 is physical camera 58 of camera 0: faces back, turned by 90 degrees, 4 mm",
      "Sensor 1 is camera 1: faces front, turned by 270 degrees",
      "zooms from 0.5 to 10, digital zoom up to 8.",
      "stream 1: 4000 x 3000 of physical camera 58"}},
    {"module.txt",
     {},
     "0 1 ",
     R"({"op": "configSensorInfo", "sensorIds": [0], "sensorInfos": {"0": {"degreeH": 53.130104, "degreeV": 41.11209, "activeArray": [0, 0, 4000, 3000]}}}
{"op": "setRunTimeCropNeedData", "requestNo": 0, "sensorModes": {"0": 0}, "streamSizes": {"0x70010000000000": [1600, 1200]}}
)",
     {"The master is sensor 0: the first camera that faces back."}},
    // An older interface to camera 50 without characteristics, and a front camera before it.
    {"legacy.txt",
     {},
     "50 1 ",
     R"({"op": "configSensorInfo", "sensorIds": [50], "sensorInfos": {"50": {"degreeH": 53.130104, "degreeV": 41.11209, "activeArray": [0, 0, 4000, 3000]}}}
)",
     {}},
    {"its.json",
     {},
     "2 5 ",
     R"({"op": "configSensorInfo", "sensorIds": [5, 2], "sensorInfos": {"5": {"degreeH": 53.130104, "degreeV": 41.11209, "activeArray": [8, 0, 4000, 3000]}, "2": {"degreeH": 90, "degreeV": 73.73979, "activeArray": [0, 0, 4000, 3000]}}}
)",
     {"physical cameras 2, 5, zooms from 0.5 to 8.", "It looks the same as: 0.",
      "53.130104 x 41.11209 by its physical size (taken), 43.602818 x 33.398487 by"}},
    {"its.json",
     {"--angles", "intrinsics", "--cameras", "5"},
     "5 ",
     R"({"op": "configSensorInfo", "sensorIds": [5], "sensorInfos": {"5": {"degreeH": 43.602818, "degreeV": 33.398487, "activeArray": [8, 0, 4000, 3000]}}}
)",
     {"by android.lens.intrinsicCalibration (taken)"}},
};
INSTANTIATE_TEST_SUITE_P(All, FormTest, testing::ValuesIn(kForms));

TEST_F(ImportRigTest, CamerasAndMasterCanBeChosen) {
    auto const sensorIds = [&](std::vector<std::string> const& options) {
        std::vector<std::string> arguments{"import-rig", phone("stereo.txt")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        auto const rig = outputOf(run(arguments));
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
    EXPECT_THAT(outputOf(import(kDump, {"--binned"})),
                HasSubstr(R"("1": {"size": [2040, 1536], "window": [4, 4, 4080, 3072]}}})"));
}

TEST_F(ImportRigTest, NumbersWithoutRoomInAStreamIdAreReplaced) {
    std::string const dump = replaced(std::string(kDump), "legacy/7", "legacy/0") +
                             replaced(std::string(kDump), "legacy/7", "external/256") +
                             replaced(std::string(kDump), "legacy/7", "legacy/back") +
                             replaced(std::string(kDump), "legacy/7", "legacy/1");
    EXPECT_THAT(outputOf(import(dump)),
                AllOf(HasSubstr("Sensor 0 is camera 0:"), HasSubstr("Sensor 2 is camera 256:"),
                      HasSubstr("Sensor 3 is camera back:"), HasSubstr("Sensor 1 is camera 1:")));
}

struct Change {
    char const* name;
    std::string_view from;
    std::string_view to;
    std::string complaint;  ///< what is said of camera 7; empty when nothing is wrong
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
        bool const isLeftOut = complaint.substr(0, 12) == " is left out";
        EXPECT_EQ(result.err, "dump.txt: camera 7" + complaint + "\n");
        EXPECT_EQ(result.out.find("Sensor 7") == std::string::npos, isLeftOut);
        EXPECT_THAT(result.out, HasSubstr("Sensor 8"));
    }
}

constexpr std::string_view kFocalLengths = "android.lens.info.availableFocalLengths";
char const* const kEmptyArray = " is left out: android.sensor.info.activeArraySize is no area";

// What is told of values that are none of the tag's.
std::string noArray(std::string const& found) {
    return " is left out: android.sensor.info.activeArraySize cannot be read (line 5: " + found +
           ")";
}

std::string noFocalLength(std::string const& found) {
    return " is left out: android.lens.info.availableFocalLengths cannot be read (line 3: " +
           found + ")";
}

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
    {"values missing", "[4 4 4081 3073 ]", "", noArray("[], announced as 4 values")},
    {"fewer values than announced", "[4 4 4081 3073 ]", "[4 4 4081 ]",
     noArray("[4 4 4081 ], announced as 4 values")},
    {"more values than announced", "[4 4 4081 3073 ]", "[4 4 4081 3073 1 ]",
     noArray("[4 4 4081 3073 1 ], announced as 4 values")},
    {"another type", "int32[4]", "int64[4]", noArray("[4 4 4081 3073 ], not announced as int32")},
    {"values beyond the type", "[4 4 4081 3073 ]", "[4 4 4294967296 3073 ]",
     noArray("[4 4 4294967296 3073 ], announced as 4 values")},
    {"no whole numbers", "[4 4 4081 3073 ]", "[4 4 4081.5 3073 ]",
     noArray("[4 4 4081.5 3073 ], announced as 4 values")},
    {"empty array", "[4 4 4081 3073 ]", "[4 4 0 3073 ]", kEmptyArray},
    {"negative origin", "[4 4 4081 3073 ]", "[-4 4 4081 3073 ]", kEmptyArray},
    {"array beyond all coordinates", "[4 4 4081 3073 ]", "[4 4 2147483647 3073 ]", kEmptyArray},
    {"floats without separator", "float[1]\n        [2.16000009 ]",
     "float[2]\n        [2.160000094.38000011 ]",
     " is left out: several focal lengths, so that its angles of view are not known"},
    {"floats without separator, damaged", "[2.16000009 ]", "[2.1600000.38000011 ]",
     noFocalLength("[2.1600000.38000011 ], announced as 1 values")},
    {"values on the tag's own line", "int32[4]\n       ", "int32[4]", ""},
    {"pasted into a mail", "      android.lens", "> > android.lens", ""},
    {"out of logcat", "      android.sensor.info.physicalSize",
     "11-21 12:00:00.000  1234  5678 D dump    : android.sensor.info.physicalSize", ""},
    {"out of an old logcat", "        [4 4 4081", "D/dump    ( 1234):         [4 4 4081", ""},
    {"not finite", "[2.16000009 ]", "[1e99 ]", noFocalLength("[1e99 ], announced as 1 values")},
    {"focal length of an unknown lens", "[2.16000009 ]", "[0.00000000 ]",
     " is left out: android.lens.info.availableFocalLengths is no length"},
    {"flat sensor", "5.23263979 3.94239998", "5.23263979 0.00000000",
     " is left out: android.sensor.info.physicalSize is no area"},
    {"two things wrong", "[2.16000009 ]\n      android.sensor.info.a",
     "[x ]\n      android.sensor.info.preCorrectionA",
     " is left out: no android.sensor.info.activeArraySize; "
     "android.lens.info.availableFocalLengths cannot be read (line 3: [x ], announced as 1 "
     "values)"},
    {"pixels that are not square", "[5.23263979 3.94239998 ]", "[3.66 8.96 ]",
     ": 3.66 x 8.96 mm for 4081 x 3073 pixels, which would not be square; one of its angles is "
     "wrong"},
    {"a lens that sees nearly everything", "[2.16000009 ]", "[0.2 ]",
     ": an angle of view of 171.25725 degrees; its physical size or focal length is wrong"},
    {"pixels that cannot be read", kTitle,
     "android.sensor.info.pixelArraySize (f0006): int32[2]\n[4081 ]\n",
     ": android.sensor.info.pixelArraySize cannot be read (line 2: [4081 ], announced as 2 "
     "values)"},
    {"array outside the pixels", kTitle,
     "android.sensor.info.pixelArraySize (f0006): int32[2]\n[4081 3076 ]\n",
     ": an active array outside its pixel array; crops may be shifted"},
};
INSTANTIATE_TEST_SUITE_P(All, ChangedDumpTest, testing::ValuesIn(kChanges));

std::string withTag(std::string_view dump, std::string_view tag) {
    return replaced(std::string(dump), kTitle, tag);
}

/// Camera 7 with these ids of physical cameras, which follow.
std::string logicalDump(std::string const& ids, std::vector<std::string> const& cameras) {
    std::string dump =
        withTag(kDump, "android.logicalMultiCamera.physicalIds (1a0000): " + ids + "\n");
    for (auto const& camera : cameras) {
        dump += replaced(std::string(kDump), "legacy/7", "legacy/" + camera);
    }
    return dump;
}

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
    {"", {}, "dump.txt: is empty: did the command run, with a phone connected?\n"},
    {"error: no devices\n",
     {},
     "dump.txt: has no characteristics of cameras; see zoomreplay import-rig --help\n"},
    {"\nPermission Denial: can't dump CameraService from pid=1, uid=2\n",
     {},
     "dump.txt: the phone refused, line 2: Permission Denial: can't dump CameraService from pid=1, "
     "uid=2; run the command from adb shell\n"},
    {"<!DOCTYPE html>\n<html>\n", {}, "dump.txt: is a web page; save the phone's text itself\n"},
    {"PK\x03\x04", {}, "dump.txt: is a zip archive, as bugreports are; unpack its text with: "},
    {"\x1F\x8B", {}, "dump.txt: is compressed; unpack it with: gzip -dc dump.txt > phone.txt\n"},
    {"== Camera HAL device device@1.0/legacy/0 (v1.0) static information: ==\n",
     {},
     "dump.txt: has cameras, but not their characteristics; take it again as adb shell or root\n"},
    {"\xFF\xFE=",
     {},
     "dump.txt: is UTF-16, as some shells write; convert it with: iconv -f UTF-16 -t UTF-8 "
     "dump.txt > "
     "phone.txt\n"},
    {replaced(std::string(kDump), "float[1]", "float[2]"),
     {},
     "cannot be read (line 3: [2.16000009 ], announced as 2 values)\n"
     "dump.txt: has no camera that can be used\n"},
    {replaced(std::string(kDump), "static information", "dumpState"),
     {},
     "dump.txt: has no characteristics of cameras; see zoomreplay import-rig --help\n"},
    {std::string(kDump), {"--cameras", "1"}, "dump.txt: has no camera 1, only 7\n"},
    {std::string(kDump), {"--master", "1"}, "camera 1 cannot be the master, only one of 7\n"},
    {replaced(std::string(kDump), kTitle, kPhysicalIds) +
         replaced(replaced(std::string(kDump), "legacy/7", "legacy/5"), "2.16000009", "2.2"),
     {},
     "dump.txt: camera 7: none of its physical cameras (5) has its focal length "
     "and physical size; choose the main one with --master\n"},
    {std::string(kDump), {"--fast"}, "--fast: unknown option\n"},
    {"== Camera Provider HAL legacy/0 (v2.4, remote) static info: 3 devices: ==\n" +
         std::string(kDump) +
         "== Camera HAL device device@1.0/legacy/7 (v1.0) static information: ==\n",
     {},
     "dump.txt: announces 3 cameras, but has only 2; take the dump again, or choose among those "
     "with --cameras\n"},
    {"Number of camera devices: 2\n" + std::string(kDump),
     {},
     "dump.txt: announces 2 cameras, but has only 1; "},
    {std::string(kDump) +
         "== Camera HAL device device@1.0/legacy/8 (v1.0) static information: ==\n",
     {},
     "dump.txt: camera 8 is there, but not described; the others are not the whole phone. Name "
     "what "
     "the rig shall have with --cameras, of 7\n"},
    {std::string(kDump) +
         "== Camera HAL device device@1.0/legacy/8 (v1.0) static information: ==\n",
     {"--cameras", "7,8"},
     "dump.txt: camera 8 was chosen, but cannot be used, as told above\n"},
    {withTag(kDump, "android.lens.facing (80005): byte[1]\n[FRONT ]\n") +
         withTag(replaced(replaced(std::string(kDump), "legacy/7", "legacy/8"), "[2.16", "[x"),
                 "android.lens.facing (80005): byte[1]\n[BACK ]\n"),
     {},
     "dump.txt: no camera that faces back can be used, as told above; "},
    {logicalDump("byte[2]\n[53 54 ]", {"53", "54"}),
     {},
     "dump.txt: camera 7: android.logicalMultiCamera.physicalIds cannot be read (line 2: [53 54 ], "
     "announced as 2 values)\ndump.txt: camera 7 is made of several, which cannot all be used, as "
     "told above; the others are not the whole phone. Name what the rig shall have with --cameras, "
     "of 53, 54\n"},
    {logicalDump("byte[4]\n[53 0 54 0 ]", {"5"}),
     {},
     "dump.txt: camera 7: no characteristics of its physical camera 6\ndump.txt: camera 7 is "
     "made "},
    {logicalDump("byte[5]\n[5 6 6 ]", {"5", "56", "6", "66"}),
     {},
     "physicalIds cannot be read ([566], which in no way, or in several, are 2 ids of this phone's "
     "cameras)\ndump.txt: camera 7 is made "},
    {logicalDump("byte[5]\n[5 6 6 ]", {"5", "6"}), {}, "dump.txt: camera 7 is made of several, "},
    {"{\"android.lens.facing\": 1,",
     {},
     "dump.txt: begins like JSON, but is damaged; a whole object with the tags of a camera is "
     "expected\n"},
    {"{'android.lens.facing': 1}\n",
     {},
     "dump.txt:1: is what Python prints of a dictionary; print it with json.dumps\n"},
};
INSTANTIATE_TEST_SUITE_P(All, UnusableDumpTest, testing::ValuesIn(kFailures));

TEST_F(ImportRigTest, RestOfABrokenPhoneCanBeChosen) {
    auto const rig = import(logicalDump("byte[2]\n[53 54 ]", {"5"}), {"--cameras", "5"});
    EXPECT_EQ(rig.status, 0);
    EXPECT_THAT(rig.out, HasSubstr(R"("sensorIds": [5])"));
}

// Lines of any length around the dump, which is printed twice, the first time cut off.
TEST_F(ImportRigTest, IdThatIsNoNameIsNotTaken) {
    auto const sound = outputOf(run({"import-rig", phone("its.json")}));
    std::ifstream file(phone("its.json"));
    std::string const text{std::istreambuf_iterator<char>(file), {}};
    write("its.json", replaced(text, R"("cameraId": "0")", R"("cameraId": "\u001b[31m")"));

    EXPECT_EQ(outputOf(run({"import-rig", "its.json"})), sound);
}

TEST_F(ImportRigTest, BugreportIsSearched) {
    std::string const noise = std::string(3000000, 'x') + "\n";
    std::string const service =
        "DUMP OF SERVICE media.camera:\n"
        "== Camera Provider HAL legacy/0 (v2.4, remote) static info: 1 devices: ==\n";
    auto const rig = import(
        noise + "android.lens.info.availableFocalLengths (90002): float[1]\n[9]\n" + service +
        std::string(kDump.substr(0, 80)) + "\n" + noise + service + std::string(kDump) + noise);
    EXPECT_EQ(rig.err, "");
    EXPECT_THAT(rig.out, AllOf(HasSubstr(kSensorLine), HasSubstr(kConfigLine)));
}

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
    for (size_t i = 0; i < dump.size(); i += 17) {
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
