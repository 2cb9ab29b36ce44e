// Ends without a scenario's end, and unusual lines.
#include <algorithm>

#include "ToolTest.h"
#include "base/LineReader.h"

namespace zoomreplay::test {
namespace {

class RobustnessTest : public ToolTest {};

// The manager holds its lock when it stops the process.
TEST_F(RobustnessTest, FatalConditionKeepsEverythingBeforeIt) {
    auto const result =
        replay(std::string(kModeLine) +
               "{\"op\":\"setRunTimeCropNeedData\",\"requestNo\":1,\"notice\":1}\n" +
               std::string(kModeLine));

    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.out,
                testing::MatchesRegex(
                    "\\{\"line\": 1, [^\n]*\n\\{\"line\": 2, \"op\": \"setRunTimeCropNeedData\", "
                    "\"fatal\": \"\\(setRunTimeCropNeedData\\)\\{#[0-9]+:"
                    "feature/common/zoomoverride/ZoomOverrideMgr.cpp\\}\"\\}\n"));
    EXPECT_THAT(
        result.err,
        testing::EndsWith("null previous runtime data, may be OverrideNotice get wrong?\n"
                          "s.jsonl:2: setRunTimeCropNeedData: the library stopped the process\n"));
}

// What the first line logs is an error, and the fatal line may not say why.
TEST_F(RobustnessTest, FatalConditionIsNotExplainedByAnEarlierLine) {
    auto const result = replay(
        "{\"op\":\"SensorCropMapper.getSensorCrop\",\"zoomRatio\":2}\n"
        "{\"op\":\"logger\",\"levels\":{\"1\":false}}\n" +
        std::string(kFatalLine));

    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.err, testing::Not(testing::HasSubstr("cannot find in mvInfo")));
}

TEST_F(RobustnessTest, FatalLineThatCannotBeWrittenIsTold) {
    write("s.jsonl", kFatalLine);
    auto const result = run({"s.jsonl", "-o", "/dev/full", "--report", "r.html"});

    EXPECT_EQ(readAll().size(), 1U);
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, testing::HasSubstr("/dev/full: cannot write: No space left on device"));
}

TEST_F(RobustnessTest, UnusualLinesAreWhole) {
    std::string const noLineEnd = R"({"op":"getZoomOverrideMode"})";
    EXPECT_EQ(outputOf(replay(noLineEnd)), kModeResult);
    EXPECT_EQ(outputOf(replay(" \t" + noLineEnd + "\r\n\r\n  // end")), kModeResult);
    EXPECT_EQ(replay("").status, 0);

    std::string const zeroByte = noLineEnd + std::string(1, '\0') + "x\n";
    EXPECT_EQ(replay(zeroByte).err, "s.jsonl:1: contains a zero byte: not a text in UTF-8\n");
}

// As a record ends whose process was killed while it wrote.
TEST_F(RobustnessTest, CutOffLineEndsTheScenario) {
    std::string const line = R"({"op":"onRequestDone","requestNo":12,"t":34})";
    write("e.jsonl", kModeResult);
    for (size_t length = 1; length < line.size(); length += 3) {
        auto const cut =
            replay(std::string(kModeLine) + line.substr(0, length), {"--compare", "e.jsonl"});

        EXPECT_EQ(cut.status, 0) << length;
        EXPECT_EQ(cut.out, kModeResult);
        EXPECT_EQ(cut.err, "s.jsonl:2: cut off; the record ends with the line before\n");
    }
    EXPECT_EQ(replay(line.substr(0, 30) + "\n").status, 2);  // nobody was killed here
    for (auto const* const typingError : {R"({"op":"isPortExist" "port":1)", R"({"a":1])"}) {
        EXPECT_THAT(replay(typingError).err, testing::HasSubstr(": unexpected "));
    }
}

TEST_F(RobustnessTest, EndlessLineIsRefused) {
    std::string const tooLong((size_t{1} << 20U) + (size_t{1} << 17U), ' ');
    auto const result = replay(std::string(kModeLine) + tooLong);

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "s.jsonl:2: longer than 1048576 bytes\n");
    EXPECT_EQ(result.out, kModeResult);
}

TEST_F(RobustnessTest, LinesAreWholeWhereverAChunkEnds) {
    constexpr size_t kChunk = size_t{64} << 10U;
    constexpr size_t kLongest = LineReader::kLongestLine;
    for (size_t const middle : {kChunk, 2 * kChunk, kLongest, kLongest + kChunk}) {
        for (size_t length = middle - 4; length < middle + 4; ++length) {
            write("text", std::string(length, 'a') + "\nb\n\n//c");
            LineReader reader(File::openInput(pathOf("text")), LineReader::LongLines::Cut);

            EXPECT_EQ(reader.nextLine(), std::string(std::min(length, kLongest), 'a')) << length;
            EXPECT_EQ(reader.nextLine(), "b");
            EXPECT_EQ(reader.nextLine(), "");
            EXPECT_FALSE(reader.isLastOpen());
            EXPECT_EQ(reader.nextLine(), "//c");
            EXPECT_TRUE(reader.isLastOpen());
            EXPECT_EQ(reader.lineNumber(), 4U);
            EXPECT_EQ(reader.nextLine(), std::nullopt);
            EXPECT_EQ(reader.bytesRead(), length + 7);
        }
    }
}

}  // namespace
}  // namespace zoomreplay::test
