// How values are read and written: a query without a strategy and a history record give back what
// the scenario holds.
#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

struct Spelling {
    char const* read;
    char const* written;
};

void PrintTo(Spelling const& spelling, std::ostream* out) {
    *out << spelling.read;
}

class FloatTest : public ToolTest, public testing::WithParamInterface<Spelling> {};

TEST_P(FloatTest, KeepsItsBits) {
    auto const result =
        replay(R"({"op":"get3ACropSetting","requestNo":1,"zoomRatio":1,"need":{"zoomRatio":)" +
               std::string(GetParam().read) + "}}\n");

    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, R"({"line": 1, "op": "get3ACropSetting", "result": false, "need": )"
                          R"({"overrideValid": false, "requestNo": -1, "zoomRatio": )" +
                              std::string(GetParam().written) + ", \"mode\": 0}}\n");
}

constexpr Spelling kFloats[] = {
    {"2", "2"},
    {"2.50", "2.5"},
    {"0", "0"},
    {"-0", "-0.0"},
    {"-0.0", "-0.0"},
    {"0.1", "0.1"},
    {"16777217", "16777216"},  // halfway between two floats: to even
    // Just above halfway between 1 and its successor: a detour over double would round down.
    {"1.00000005960464477540", "1.0000001"},
    {"1e-45", "1e-45"},  // the smallest denormal
    // Without an exponent while that is not longer.
    {"0.001", "0.001"},
    {"0.0001", "1e-04"},
    {"0.00012", "0.00012"},
    {"0.000012", "1.2e-05"},
    {"-12.25", "-12.25"},
    {"20000", "20000"},
    {"100000", "1e+05"},
    {"123456792", "123456792"},
    {"9007199254740992", "9.007199e+15"},
    {"0.30000001192092896", "0.3"},
    {"0.3000000417232513", "0.30000004"},
    {"33554436", "33554436"},  // eight digits, all of a whole number
    {"1.1754942e-38", "1.1754942e-38"},
    {"3.4028235e38", "3.4028235e+38"},
    {"1e-60", "0"},
    // Powers of two: one digit fewer reads back as well, but is not the nearest of its length.
    {"1.2621775e-29", "1.26217745e-29"},
    {"1.5474251e26", "1.54742505e+26"},
    {R"("nan")", R"("nan")"},
    {R"("inf")", R"("inf")"},
    {R"("-inf")", R"("-inf")"},
};
INSTANTIATE_TEST_SUITE_P(Spellings, FloatTest, testing::ValuesIn(kFloats));

class HistoryTest : public ToolTest, public testing::WithParamInterface<Spelling> {};

TEST_P(HistoryTest, KeepsItsNumbers) {
    auto const result =
        replay(R"({"op":"setRunTimeCropNeedData","requestNo":-1,)" + std::string(GetParam().read) +
               "}\n" + R"({"op":"getHistoryCropNeedData","requestNo":"0xFFFFFFFF"})" + "\n");

    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, testing::HasSubstr(GetParam().written));
}

constexpr Spelling kTables[] = {
    // Sensors in decimal and in ascending order; one that does not stream.
    {R"("sensorModes":{"10":"0x2","9":"3","0x1":-1})",
     R"("sensorModes": {"1": 4294967295, "9": 3, "10": 2})"},
    // Stream ids: bit patterns in hexadecimal, negative ones first.
    {R"("streamSizes":{"28675":[1,2],"0xFFFFFFFFFFFFFFFE":["3","0x4"],"-1":[5,6]})",
     R"("streamSizes": {"0xfffffffffffffffe": [3, 4], "0xffffffffffffffff": [5, 6], "0x7003": [1, 2]})"},
    {R"("constraintStreams":{"0x70010000000000":"0x8000000000000000","1":-9223372036854775808})",
     R"("constraintStreams": {"0x1": "0x8000000000000000", "0x70010000000000": "0x8000000000000000"})"},
    {R"("extraTable":{"4294967295":-2147483648,"0":2147483647})",
     R"("extraTable": {"0": 2147483647, "4294967295": -2147483648})"},
};
INSTANTIATE_TEST_SUITE_P(Spellings, HistoryTest, testing::ValuesIn(kTables));

TEST_F(HistoryTest, HistoryTakesASignedNumber) {
    auto const result = replay(
        "{\"op\":\"setRunTimeCropNeedData\",\"requestNo\":4294967294}\n"
        "{\"op\":\"getHistoryCropNeedData\",\"requestNo\":-2}\n");

    EXPECT_EQ(result.status, 0) << result.err;
}

// Those of the platform's lines have no result to stand in.
TEST_F(HistoryTest, TimesAreRepeated) {
    EXPECT_EQ(
        outputOf(replay(R"({"op":"publish","t":1}
{"op":"getZoomOverrideMode","t":9223372036854775807,"dur":0}
{"op":"getZoomOverrideMode","dur":"12"}
)")),
        R"({"line": 2, "t": 9223372036854775807, "dur": 0, "op": "getZoomOverrideMode", "result": 0}
{"line": 3, "dur": 12, "op": "getZoomOverrideMode", "result": 0}
)");
}

TEST_F(FloatTest, IntegersOfAnotherZeroAreZero) {
    EXPECT_EQ(replay(R"({"op":"onRequestDone","requestNo":-0})").status, 0);
}

}  // namespace
}  // namespace zoomreplay::test
