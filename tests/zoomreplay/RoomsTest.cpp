// What a new mode, operation, command or field needs beside the code that the compiler asks for:
// each room that was forgotten is named.
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "Commands.h"
#include "ToolTest.h"
#include "replay/Operations.h"
#include "scenario/text/Modes.h"
#include "scenario/text/RecordFields.h"

namespace zoomreplay::test {
namespace {

using namespace NSCam::Feature;

std::string textOf(std::string const& file) {
    std::ostringstream text;
    text << std::ifstream(SOURCES + file).rdbuf();
    EXPECT_FALSE(text.str().empty()) << file;
    return text.str();
}

/// Expects a file to have all of these words.
void expectWords(std::string const& file, std::set<std::string> const& words) {
    auto const text = textOf(file);
    for (auto const& word : words) {
        EXPECT_TRUE(std::regex_search(text, std::regex("\\b" + word + "\\b")))
            << file << " does not know " << word;
    }
}

std::string importTests() {
    std::string text;
    for (auto const& file : std::filesystem::directory_iterator(SOURCES "tests/import")) {
        if (file.path().extension() == ".cpp") {
            text += textOf("tests/import/" + file.path().filename().string());
        }
    }
    return text;
}

std::set<std::string> modesWithAStrategy() {
    std::set<std::string> names;
    for (auto const mode : scenario::overridingModes()) {
        names.emplace(scenario::nameOf(mode));
    }
    return names;
}

/// The operations of the manager, as pipelines see them.
std::set<std::string> managerNames() {
    auto const header = textOf("include/IZoomOverrideMgr.h");
    std::regex const declaration(R"(virtual [^~;(]* (\w+)\()");
    std::set<std::string> names;
    for (std::sregex_iterator found(header.begin(), header.end(), declaration), end; found != end;
         ++found) {
        names.insert((*found)[1]);
    }
    return names;
}

template <typename... Records>
std::set<std::string> fieldNames() {
    std::set<std::string> names;
    (scenario::visitFields<Records>([&](auto const& field) { names.emplace(field.name); }), ...);
    return names;
}

class RoomsTest : public ToolTest {};

TEST_F(RoomsTest, EveryModeIsKnown) {
    auto const modes = modesWithAStrategy();
    for (auto const* file : {"README.md", "docs/import.md", "docs/integration.md",
                             "docs/log-lines.md", "docs/scenario-format.md", "docs/zoomreplay.1",
                             "tests/recorder/check_records.py", "tests/targets/generate.py"}) {
        expectWords(file, modes);
    }
    std::set<std::string> classes;
    std::set<std::string> sources;
    for (auto const& mode : modes) {
        classes.insert("ZoomOverride" + mode);
        sources.insert("ZoomOverride" + mode + "\\.cpp");
        outputOf(run({"new", "first.jsonl", "--mode", mode}));
        EXPECT_THAT(read("first.jsonl"), testing::HasSubstr("\"mode\": \"" + mode + '"'));
        EXPECT_THAT(outputOf(run({"first.jsonl"})), testing::HasSubstr("  override  0 ")) << mode;
        std::filesystem::remove(pathOf("first.jsonl"));
    }
    expectWords("Android.bp", sources);
    expectWords("tests/module/FatalTest.cpp", classes);
}

TEST_F(RoomsTest, EveryOperationIsKnown) {
    std::set<std::string> names = managerNames();
    // The first is recorded, and held to its record.
    expectWords("tests/recorder/odd-values.jsonl", names);
    expectWords("fuzz/InterfaceFuzzer.cpp", names);
    expectWords("tests/abi/Describe.cpp", names);
    std::set<std::string> replayed;
    for (auto const& operation : managerOperations()) {
        replayed.emplace(operation.name);
    }
    EXPECT_EQ(names, replayed);
    for (auto const group : {platformOperations(), mapperOperations()}) {
        for (auto const& operation : group) {
            names.emplace(operation.name);
        }
    }
    expectWords("docs/scenario-format.md", names);
}

TEST_F(RoomsTest, EveryCommandIsKnown) {
    std::istringstream list(listCommands());
    for (std::string name, summary; list >> name && std::getline(list, summary);) {
        if (name.rfind("import-", 0) != 0) {
            expectWords("docs/zoomreplay.md", {"zoomreplay " + name});
            continue;
        }
        expectWords("docs/import.md", {"zoomreplay " + name});
        expectWords("fuzz/PhoneFuzzer.cpp", {name});
        EXPECT_NE(importTests().find('"' + name + '"'), std::string::npos)
            << "no test in tests/import runs " << name;
    }
}

TEST_F(RoomsTest, EveryFieldIsKnown) {
    expectWords(
        "docs/scenario-format.md",
        fieldNames<ZoomOverrideRequest, ZoomOverrideP1Need, ZoomOverrideP2Need, ZoomOverride3ANeed,
                   RunTimeCropNeedData, ZoomOverrideSetting, ZoomOverrideFspInfoConfig,
                   ZoomOverrideSensorInfoConfig, ZoomOverrideSensorInfo,
                   ZoomOverrideSensorBehaviorInfoConfig, SensorCropMapperConfig, SensorCropInput,
                   SensorCropOutput, NSCam::v3::CustomZoomRatioOverride>());
}

}  // namespace
}  // namespace zoomreplay::test
