// What people wait for is read the quick way. That it is read right, fuzz/LinesFuzzer.cpp sees to.
#include "scenario/json/QuickReader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/LineReader.h"
#include "scenario/json/Document.h"

namespace zoomreplay::test {
namespace {

TEST(QuickReaderTest, ReadsEveryLineOfTheExamples) {
    scenario::QuickReader reader;
    scenario::NodeMemory memory;
    uint64_t lines = 0;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(EXAMPLES)) {
        if (entry.path().extension() != ".jsonl") {
            continue;
        }
        LineReader file(File::openInput(entry.path()));
        while (auto const line = file.next()) {
            EXPECT_NE(reader.read(*line, memory), nullptr) << *line;
            ++lines;
        }
    }
    EXPECT_GT(lines, 100U);
}

TEST(QuickReaderTest, LeavesTheRestToTheStrictReader) {
    scenario::QuickReader reader;
    scenario::NodeMemory memory;
    for (auto const* line : {R"({"a":-0})", R"({"a":1e99})", R"({"a":1,"a":1})", R"({"a":1}x)",
                             R"({"a":1.000000059604644775390625})", "[]", ""}) {
        EXPECT_EQ(reader.read(line, memory), nullptr) << line;
    }
}

// A list of single digits takes up as much of the memory as a line can.
TEST(QuickReaderTest, TheStrictReaderHasRoomForTheSameLine) {
    scenario::Document document;
    for (size_t const count : {10U, 1000U, 100U}) {
        std::string line = "{\"a\":[";
        for (size_t i = 0; i < count; ++i) {
            line += "7,";
        }
        auto const& members =
            std::get<scenario::Members>(document.parse(line + "false,-0]}").value);
        ASSERT_EQ(members.size(), 1U);
        auto const& elements = std::get<scenario::Elements>(members[0].node.value);
        ASSERT_EQ(elements.size(), count + 2);
        EXPECT_EQ(std::get<uint64_t>(elements[count - 1].value), 7U);
        EXPECT_FALSE(std::get<bool>(elements[count].value));
        EXPECT_EQ(std::get<int64_t>(elements[count + 1].value), 0);
    }
}

}  // namespace
}  // namespace zoomreplay::test
