// import-rig: sensor lines out of a phone's own description. Angles of view are worked out with
// 40 digits and rounded to the nearest float.
#include "ToolTest.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace zoomreplay::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

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
/// What a rig says of such a camera, whose id # stands for.
constexpr std::string_view kComment = "// Sensor # is camera #: 2.16 mm, 5.23264 x 3.9424 mm.\n";
constexpr std::string_view kSensorLine =
    R"({"op": "sensor", "id": #, "modes": {"0": {"size": [4081, 3073], "window": [4, 4, 4081, 3073]}}})"
    "\n";
constexpr std::string_view kConfigLines =
    R"(// The master is sensor #: the first camera.
{"op": "configSensorInfo", "sensorIds": [#], "sensorInfos": {"#": {"degreeH": 100.91471, "degreeV": 84.766685, "activeArray": [4, 4, 4081, 3073]}}}
)";

std::string withId(char id, std::initializer_list<std::string_view> parts) {
    std::string text;
    for (auto const part : parts) {
        text += part;
    }
    std::replace(text.begin(), text.end(), '#', id);
    return text;
}

std::string rigOf(char id) {
    return withId(id, {kComment, kSensorLine, kConfigLines});
}

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

    static std::string expected(std::string const& name) {
        std::ifstream file(phone(("expected/" + name + ".jsonl").c_str()));
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

// What one form of text becomes.
struct Form {
    char const* file;
    char const* rig;
    std::vector<std::string> options;
    std::string complaint;
};

void PrintTo(Form const& form, std::ostream* out) {
    *out << form.rig;
}

class FormTest : public ImportRigTest, public testing::WithParamInterface<Form> {};

TEST_P(FormTest, BecomesARigThatStreams) {
    auto const& [file, rig, options, complaint] = GetParam();
    std::vector<std::string> arguments{"import-rig", phone(file)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    auto const result = run(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, complaint.empty() ? "" : phone(file) + complaint);
    EXPECT_EQ(result.out, expected(rig));

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

// In the last four the lenses are of 4, 8, 16 and 32 mm behind 8 x 6 mm, or of 8 mm behind more:
// half the angles have the tangents 1 and 0.75, and so on. Focal lengths in pixels give the tangent
// 2000 or 1500 over them.
Form const kForms[] = {
    // Byte order mark, CRLF. Two equal cameras behind a logical one, which lists the hidden one
    // first. An array that does not begin at (0, 0); a request with a tag of the same name.
    {"stereo.txt", "stereo", {}, ""},
    // A bugreport, which tells of the open camera twice. Three hidden cameras, the main one second,
    // two of them with streams.
    {"triple.txt",
     "triple",
     {},
     ": camera 1 is left out: several focal lengths, so that its angles of view are not known\n"},
    // Characters for ids, in another order than the cameras; a front camera first. 4000 of 4100
    // columns of 8.2 mm. Calibrations that agree and that do not. A stream for 58 alone.
    {"characters.txt", "characters", {}, ""},
    {"module.txt", "module", {}, ""},
    // An older interface to camera 50 without characteristics, and a front camera before it.
    {"legacy.txt", "legacy", {}, ""},
    // One focal length, two sizes, one of which is that of more pixels than the array has.
    {"its.json",
     "its",
     {},
     ": camera 9 is left out: angles of view of 180 x 41.11209 degrees; its physical size or focal "
     "length is wrong\n"},
    {"its.json",
     "its-intrinsics",
     {"--angles", "intrinsics", "--cameras", "5,9", "--binned"},
     ": camera 9: 1e+09 x 6 mm for 4000 x 3000 pixels, which would not be square; one of its "
     "angles is wrong; an angle of view of 180 degrees; its physical size or focal length is "
     "wrong\n"},
};
INSTANTIATE_TEST_SUITE_P(All, FormTest, testing::ValuesIn(kForms));

TEST_F(ImportRigTest, CamerasAndMasterCanBeChosen) {
    auto const choice = [&](std::vector<std::string> const& options) {
        std::vector<std::string> arguments{"import-rig", phone("stereo.txt")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        auto const rig = outputOf(run(arguments));
        auto const reason = rig.find(": ", rig.find("// The master")) + 2;
        auto const ids = rig.find("\"sensorIds\": ") + 13;
        return rig.substr(ids, rig.find(']', ids) + 2 - ids) +
               rig.substr(reason, rig.find(".\n", reason) - reason);
    };
    std::string const main = " the first with the focal length and physical size of camera 3";

    EXPECT_EQ(choice({"--master", "0"}), "[0, 2],chosen");
    EXPECT_EQ(choice({"--cameras", "1"}), "[1],the first that was chosen");
    EXPECT_EQ(choice({"--cameras", "2,1"}), "[2, 1],the first that was chosen");
    EXPECT_EQ(choice({"--cameras", "1,3"}), "[2, 1, 0]," + main.substr(1));
    EXPECT_EQ(choice({"--cameras", "3,0,3", "--master", "0"}), "[0, 2],chosen");
    EXPECT_EQ(run({"import-rig", phone("stereo.txt"), "--master", "1"}).err,
              phone("stereo.txt") + ": camera 1 cannot be the master, only one of 2, 0\n");
}

// The pixel that an odd array has left over is not read out.
TEST_F(ImportRigTest, BinnedModeReadsWholePairs) {
    EXPECT_THAT(outputOf(import(kDump, {"--binned"})),
                HasSubstr(R"("1": {"size": [2040, 1536], "window": [4, 4, 4080, 3072]}}})"));
}

TEST_F(ImportRigTest, NumbersWithoutRoomInAStreamIdAreReplaced) {
    std::string const dump = replaced(std::string(kDump), "legacy/7", "external/256") +
                             replaced(std::string(kDump), "legacy/7", "legacy/back") +
                             replaced(std::string(kDump), "legacy/7", "legacy/1") +
                             replaced(std::string(kDump), "legacy/7", "legacy/01");
    EXPECT_THAT(outputOf(import(dump)),
                AllOf(HasSubstr("Sensor 0 is camera 256:"), HasSubstr("Sensor 2 is camera back:"),
                      HasSubstr("Sensor 1 is camera 1:"), HasSubstr("Sensor 3 is camera 01:")));
}

TEST_F(ImportRigTest, CamerasThatNumbersDoNotSufficeForAreRefused) {
    std::string dump;
    for (int i = 0; i < 256; ++i) {
        dump += replaced(std::string(kDump), "legacy/7", "legacy/c" + std::to_string(i));
    }
    EXPECT_THAT(outputOf(import(dump)), HasSubstr("Sensor 255 is camera c255:"));
    EXPECT_EQ(import(dump + std::string(kDump)).err,
              "dump.txt: has more cameras than a scenario has room for\n");
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
    EXPECT_EQ(result.err, complaint.empty() ? "" : "dump.txt: camera 7" + complaint + "\n");
    if (complaint.empty()) {
        constexpr std::string_view kTwin = "// It looks the same as: #.\n";
        EXPECT_EQ(result.out, withId('7', {kComment}) + withId('8', {kTwin}) +
                                  withId('7', {kSensorLine}) + withId('8', {kComment}) +
                                  withId('7', {kTwin}) + withId('8', {kSensorLine}) +
                                  withId('7', {kConfigLines}));
    } else if (complaint.substr(0, 12) == " is left out") {
        EXPECT_EQ(result.out, rigOf('8'));
    } else {
        EXPECT_THAT(result.out, AllOf(HasSubstr("\"sensorIds\": [7]"), HasSubstr("Sensor 8 is")));
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

char const* const kIsOutside = ": an active array outside its pixel array; crops may be shifted";

Change const kChanges[] = {
    {"unchanged", "API2", "API2", ""},
    {"indented by tabs", "android.lens.info.a", "\tandroid.lens.info.a", ""},
    {"values wrapped", "[4 4 4081 3073 ]", "[4\t4\n        4081 3073 ]", ""},
    {"values wrapped, each line in brackets", "[4 4 4081 3073 ]", "[4 4 ]\n[4081 3073 ]", ""},
    {"a tag with a longer name", "android.lens.info.a",
     "android.lens.info.availableFocalLengthsOfNobody (1): float[1]\n[9 ]\nandroid.lens.info.a",
     ""},
    {"tag missing", kFocalLengths, "android.lens.info.focalLengths",
     " is left out: no android.lens.info.availableFocalLengths"},
    {"size missing", "android.sensor.info.physicalSize", "android.sensor.info.size",
     " is left out: no android.sensor.info.physicalSize"},
    {"values missing", "[4 4 4081 3073 ]", "", noArray("[], announced as 4 values")},
    {"fewer values than announced", "int32[4]", "int32[5]",
     noArray("[4 4 4081 3073 ], announced as 5 values")},
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
     "11-21 12:00:00.000  1234  5678 I dump    : android.sensor.info.physicalSize", ""},
    {"out of an old logcat", "        [4 4 4081", "D/dump    ( 1234):         [4 4 4081", ""},
    {"out of an old logcat, with its time", "        [4 4 4081",
     "11-21 12:00:00.000 D/dump    ( 1234):         [4 4 4081", ""},
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
    {"a lens that sees more than all", "[5.23263979 3.94239998 ]", "[1e9 3.94239998 ]",
     " is left out: angles of view of 180 x 84.766685 degrees; its physical size or focal length "
     "is "
     "wrong"},
    {"pixels that are not square", kTitle,
     "android.sensor.info.pixelArraySize (f0006): int32[2]\n[5000 3080 ]\n",
     ": 5.23264 x 3.9424 mm for 5000 x 3080 pixels, which would not be square; one of its angles "
     "is "
     "wrong"},
    {"a lens that sees nearly everything", "[5.23263979 3.94239998 ]", "[3.66 60 ]",
     ": 3.66 x 60 mm for 4081 x 3073 pixels, which would not be square; one of its angles is "
     "wrong; an angle of view of 171.76363 degrees; its physical size or focal length is wrong"},
    {"what is only told cannot be read", kTitle,
     "android.sensor.info.pixelArraySize (f0006): int32[2]\n[4081 ]\n"
     "android.control.zoomRatioRange (10030): float[2]\n[1.0 x ]\n"
     "android.lens.facing (80005): byte[1]\n[SIDE ]\n"
     "android.lens.intrinsicCalibration (8000a): float[4]\n[9 9 9 9 ]\n"
     "android.scaler.availableMaxDigitalZoom (d0004): float[1]\n[]\n"
     "android.sensor.orientation (f000e): int32[1]\n[90.5 ]\n",
     ": android.control.zoomRatioRange cannot be read (line 4: [1.0 x ], announced as 2 values); "
     "android.lens.facing cannot be read (line 6: [SIDE ], announced as 1 values); "
     "android.lens.intrinsicCalibration cannot be read (line 8: [9 9 9 9 ], announced as 4 "
     "values); "
     "android.scaler.availableMaxDigitalZoom cannot be read (line 10: [], announced as 1 values); "
     "android.sensor.info.pixelArraySize cannot be read (line 2: [4081 ], announced as 2 values); "
     "android.sensor.orientation cannot be read (line 12: [90.5 ], announced as 1 values)"},
    {"columns outside the pixels", kTitle,
     "android.sensor.info.pixelArraySize (f0006): int32[2]\n[4084 3077 ]\n", kIsOutside},
    {"rows outside the pixels", kTitle,
     "android.sensor.info.pixelArraySize (f0006): int32[2]\n[4085 3076 ]\n", kIsOutside},
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
    std::string message;
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
    EXPECT_EQ(result.err, GetParam().message);
    EXPECT_EQ(read("rig.jsonl"), "old");
}

constexpr std::string_view kBareCamera =
    "== Camera HAL device device@1.0/legacy/8 (v1.0) static information: ==\n";

/// The end of messages, before the cameras that are left.
std::string choose(std::string const& cameras) {
    return "; the others are not the whole phone. Name what the rig shall have with --cameras, "
           "of " +
           cameras + "\n";
}

std::string facing(std::string const& direction, std::string const& dump) {
    return withTag(dump, "android.lens.facing (80005): byte[1]\n[" + direction + " ]\n");
}

std::string damaged(std::string_view dump) {
    return replaced(std::string(dump), "[2.16", "[x");
}

std::string const kIsDamaged =
    " is left out: android.lens.info.availableFocalLengths cannot be read (line ";
std::string const kSeveral =
    "dump.txt: camera 7 is made of several, which cannot all be used, as told above";

std::string badIds(std::string const& found) {
    return "dump.txt: camera 7: android.logicalMultiCamera.physicalIds cannot be read (" + found +
           ")\n";
}

std::string const kIsWide =
    "dump.txt: is UTF-16, as some shells write; convert it with: iconv -f UTF-16 -t UTF-8 "
    "dump.txt > phone.txt\n";

std::string repeated(std::string const& text, size_t times) {
    std::string all;
    while (times-- > 0) {
        all += text;
    }
    return all;
}

// Right, but for its size.
std::string largeJson() {
    return "{\"android.lens.facing\": [\n" + repeated(std::string(1000000, '1') + ",\n", 17) +
           "1]}\n";
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
    {"<html>\nCan't find service: media.camera\n",
     {},
     "dump.txt: the phone refused, line 2: Can't find service: media.camera; run the command from "
     "adb shell\n"},
    {"<!DOCTYPE html>\n<html>\n", {}, "dump.txt: is a web page; save the phone's text itself\n"},
    {"PK\x03\x04",
     {},
     "dump.txt: is a zip archive, as bugreports are; unpack its text with: unzip -p dump.txt "
     "'bugreport-*.txt' > bugreport.txt\n"},
    {"\x1F\x8B", {}, "dump.txt: is compressed; unpack it with: gzip -dc dump.txt > phone.txt\n"},
    {"\xFF\xFE=", {}, kIsWide},
    {"\xFE\xFF=", {}, kIsWide},
    {largeJson(), {}, "dump.txt: is JSON, but too large for the characteristics of cameras\n"},
    {std::string(kBareCamera),
     {},
     "dump.txt: camera 8 is left out: has no characteristics\n"
     "dump.txt: has cameras, but not their characteristics; take it again as adb shell or root\n"},
    {replaced(std::string(kDump), "float[1]", "float[2]"),
     {},
     "dump.txt: camera 7" + kIsDamaged +
         "3: [2.16000009 ], announced as 2 values)\ndump.txt: has no camera that can be used\n"},
    {replaced(std::string(kDump), "static information", "dumpState"),
     {},
     "dump.txt: has no characteristics of cameras; see zoomreplay import-rig --help\n"},
    {std::string(kDump), {"--cameras", "1"}, "dump.txt: has no camera 1, only 7\n"},
    {replaced(std::string(kDump), kTitle, kPhysicalIds) +
         replaced(replaced(std::string(kDump), "legacy/7", "legacy/5"), "2.16000009", "2.2"),
     {},
     "dump.txt: camera 7: none of its physical cameras (5) has its focal length and physical size; "
     "choose the main one with --master\n"},
    {std::string(kDump),
     {"--angles", "intrinsics"},
     "dump.txt: camera 7 is left out: no android.lens.intrinsicCalibration\n"
     "dump.txt: has no camera that can be used\n"},
    {withTag(kDump, "android.lens.intrinsicCalibration (8000a): float[5]\n[0 9 9 9 0 ]\n"),
     {"--angles", "intrinsics"},
     "dump.txt: camera 7 is left out: android.lens.intrinsicCalibration has no focal lengths\n"
     "dump.txt: has no camera that can be used\n"},
    {std::string(kDump), {"--fast"}, "--fast: unknown option\nTry zoomreplay import-rig --help.\n"},
    // Of two providers, the second of which prints one camera for two of its devices.
    {"== Camera Provider HAL external/0 (v2.4, remote) static info: 1 devices: ==\n"
     "== Camera Provider HAL legacy/0 (v2.4, remote) static info: 2 devices: ==\n" +
         std::string(kDump) +
         "== Camera HAL device device@1.0/legacy/7 (v1.0) static information: ==\n",
     {},
     "dump.txt: announces 3 cameras, but has only 2; take the dump again, or choose among those "
     "with --cameras\n"},
    {"Number of camera devices: 2\n" + std::string(kDump),
     {},
     "dump.txt: announces 2 cameras, but has only 1; take the dump again, or choose among those "
     "with --cameras\n"},
    {std::string(kDump).append(kBareCamera),
     {},
     "dump.txt: camera 8 is left out: has no characteristics\n"
     "dump.txt: camera 8 is there, but not described" +
         choose("7")},
    {std::string(kDump).append(kBareCamera),
     {"--cameras", "7,8"},
     "dump.txt: camera 8 is left out: has no characteristics\n"
     "dump.txt: camera 8 was chosen, but cannot be used, as told above\n"},
    {facing("FRONT", std::string(kDump)) +
         facing("BACK", damaged(replaced(std::string(kDump), "legacy/7", "legacy/8"))),
     {},
     "dump.txt: camera 8" + kIsDamaged +
         "13: [x000009 ], announced as 1 values)\n"
         "dump.txt: no camera that faces back can be used, as told above" +
         choose("7")},
    {logicalDump("byte[2]\n[53 54 ]", {"53", "54"}),
     {},
     badIds("line 2: [53 54 ], announced as 2 values") + kSeveral + choose("53, 54")},
    {logicalDump("byte[2]\n[309 0 ]", {"5"}),
     {},
     badIds("line 2: [309 0 ], announced as 2 values") + kSeveral + choose("5")},
    {logicalDump("byte[4]\n[53 0 54 0 ]", {"5"}),
     {},
     "dump.txt: camera 7: no characteristics of its physical camera 6\n" + kSeveral + choose("5")},
    {logicalDump("byte[4]\n[53 0 54 0 ]", {"6"}) +
         damaged(replaced(std::string(kDump), "legacy/7", "legacy/5")),
     {},
     "dump.txt: camera 5" + kIsDamaged + "20: [x000009 ], announced as 1 values)\n" + kSeveral +
         choose("6")},
    {logicalDump("byte[5]\n[5 6 6 ]", {"5", "56", "6", "66"}),
     {},
     badIds("[566], which in no way, or in several, are 2 ids of this phone's cameras") + kSeveral +
         choose("5, 56, 6, 66")},
    {logicalDump("byte[5]\n[5 6 6 ]", {"5", "6"}),
     {},
     badIds("[566], which in no way, or in several, are 2 ids of this phone's cameras") + kSeveral +
         choose("5, 6")},
    {logicalDump("byte[600]\n[" + repeated("5 ", 300) + "]", {"5"}),
     {},
     badIds("line 2: [" + repeated("5 ", 40) + "], announced as 600 values") + kSeveral +
         choose("5")},
    {R"({"android.lens.facing": 1, "android.logicalMultiCamera.physicalIds": []})",
     {},
     "dump.txt: camera 0: android.logicalMultiCamera.physicalIds cannot be read ([], announced as "
     "0 values)\ndump.txt: has no camera that can be used\n"},
    {"{\"android.lens.facing\": 1,",
     {},
     "dump.txt: begins like JSON, but is damaged; a whole object with the tags of a camera is "
     "expected\n"},
    {"{'android.lens.facing': 1}\n",
     {},
     "dump.txt:1: is what Python prints of a dictionary; print it with json.dumps\n"},
};
INSTANTIATE_TEST_SUITE_P(All, UnusableDumpTest, testing::ValuesIn(kFailures));

TEST_F(ImportRigTest, LogicalCameraThatFacesBackComesFirst) {
    auto const logical = [](std::string const& facing, std::string const& code, char const* id) {
        return logicalDump(
            "byte[2]\n[" + code + " 0 ]\nandroid.lens.facing (80005): byte[1]\n[" + facing + " ]",
            {id});
    };
    std::string const front = logical("FRONT", "53", "5");
    std::string const back = replaced(logical("BACK", "54", "6"), "legacy/7", "legacy/9");

    EXPECT_THAT(outputOf(import(front)), HasSubstr(R"("sensorIds": [5])"));
    EXPECT_THAT(outputOf(import(front + back)), HasSubstr(R"("sensorIds": [6])"));
}

TEST_F(ImportRigTest, RestOfABrokenPhoneCanBeChosen) {
    auto const rig = import("Number of camera devices: 9\n" +
                                logicalDump("byte[2]\n[53 54 ]", {"5"}).append(kBareCamera),
                            {"--cameras", "5"});
    EXPECT_EQ(rig.status, 0) << rig.err;
    EXPECT_THAT(rig.out, HasSubstr(R"("sensorIds": [5])"));
}

TEST_F(ImportRigTest, StandardInputIsToldOfByItsName) {
    std::string const damaged = replaced(std::string(kDump), "3073 ", "");
    std::string const whole = replaced(std::string(kDump), "legacy/7", "legacy/8");
    EXPECT_THAT(run({"import-rig", "-"}, damaged + whole).err, StartsWith("<stdin>: camera 7 "));
}

TEST_F(ImportRigTest, IdThatIsNoNameIsNotTaken) {
    std::ifstream file(phone("its.json"));
    std::string const text{std::istreambuf_iterator<char>(file), {}};

    EXPECT_THAT(
        outputOf(import(replaced(text, R"("cameraId": "3")", R"("cameraId": "\u001b[31m")"))),
        HasSubstr("// Camera 0 is logical"));
    EXPECT_EQ(outputOf(import(replaced(std::string(kDump), "legacy/7", "legacy/\x1b[31m") +
                              std::string(kDump))),
              rigOf('7'));
}

// Lines of any length around the dump, which is printed twice, the first time cut off. The open
// camera streams from one that is not in the rig.
TEST_F(ImportRigTest, BugreportIsSearched) {
    std::string const noise = std::string(3000000, 'x') + "\n";
    std::string const service =
        "DUMP OF SERVICE media.camera:\n"
        "== Camera Provider HAL legacy/0 (v2.4, remote) static info: 1 devices: ==\n";
    std::string const session =
        "== Camera device 7 dynamic info: ==\n    Stream[0]: Output\n      Dims: 8 x 6\n"
        "      Physical camera id: 9\n";
    auto const rig =
        import(noise + "android.lens.info.availableFocalLengths (90002): float[1]\n[9]\n" +
               service + std::string(kDump.substr(0, 80)) + "\n" + noise + service + session +
               std::string(kDump) + noise);
    EXPECT_EQ(rig.err, "");
    EXPECT_EQ(rig.out, rigOf('7'));
}

TEST_F(ImportRigTest, HelpTellsWhatToTypeOnAPhone) {
    auto const help = run({"import-rig", "--help"});

    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("adb shell dumpsys media.camera > dump.txt"));
}

}  // namespace
}  // namespace zoomreplay::test
