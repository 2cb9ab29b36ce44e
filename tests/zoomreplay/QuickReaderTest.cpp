// What people wait for is read the quick way. That it is read right, fuzz/LinesFuzzer.cpp sees to.
#include "scenario/json/QuickReader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/LineReader.h"

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

}  // namespace
}  // namespace zoomreplay::test
