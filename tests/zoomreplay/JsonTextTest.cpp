// The texts of numbers, whichever functions the standard library has for them.
#include "scenario/text/JsonText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "scenario/text/Line.h"

namespace scenario::test {
namespace {

int digitsOf(std::string const& text) {
    std::string digits = text.substr(0, text.find('e'));
    std::erase_if(digits, [](char c) { return std::isdigit(static_cast<unsigned char>(c)) == 0; });
    digits.erase(0, digits.find_first_not_of('0'));
    return static_cast<int>(digits.find_last_not_of('0')) + 1;
}

/// The decimal number of so many digits that is the nearest.
float nearest(float value, int digits) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.*e", digits - 1, static_cast<double>(value));
    return std::strtof(text.data(), nullptr);
}

void expectFewestDigits(float value) {
    std::string const text = jsonText(value);
    ASSERT_EQ(std::strtof(text.c_str(), nullptr), value) << text;
    int const digits = digitsOf(text);
    bool const isWhole = std::abs(value) >= 1.0F && std::trunc(value) == value;
    EXPECT_TRUE(isWhole || digits == 1 || nearest(value, digits - 1) != value) << text;
}

TEST(JsonTextTest, FloatsHaveTheFewestDigitsThatReadBack) {
    std::mt19937 random(1);
    for (int i = 0; i < 100000; ++i) {
        auto const value = std::bit_cast<float>(static_cast<uint32_t>(random()));
        if (std::isfinite(value)) {
            expectFewestDigits(value);
        }
        expectFewestDigits(static_cast<float>(random() % 1000000U) / 1e4F);
    }
    for (int exponent = -149; exponent < 128; ++exponent) {
        expectFewestDigits(std::ldexp(1.0F, exponent));
    }
}

TEST(JsonTextTest, TextsAreEscapedWhereTheyMustBe) {
    EXPECT_EQ(jsonText(std::string_view(R"(a "b" \)")), R"("a \"b\" \\")");
    EXPECT_EQ(jsonText(std::string_view("\n\x01\x7F~ ")), "\"\\n\\u0001\x7F~ \"");
    EXPECT_EQ(jsonText(std::string_view("\u20AC\xFF")), "\"\u20AC\uFFFD\"");
}

TEST(JsonTextTest, LinesHaveNoEmptyTables) {
    NSCam::Feature::ZoomOverrideP2Need need;
    need.extraTgCrops[3] = {1, 2, 3, 4};
    std::string out;
    Line line(out, "x");
    line.fields(need).table("none", need.streamCrops).number("n", 5).json("j", "[]").end();
    EXPECT_EQ(out,
              R"({"op": "x", "overrideValid": false, "requestNo": -1, "zoomRatio": 1, "mode": 0, )"
              R"("overrideRect": [0, 0, 0, 0], "extraTgCrops": {"3": [1, 2, 3, 4]}, )"
              R"("n": 5, "j": []})"
              "\n");
}

}  // namespace
}  // namespace scenario::test
