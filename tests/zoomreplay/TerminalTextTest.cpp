// Texts of others on the terminal.
#include "base/TerminalText.h"

#include "ToolTest.h"

namespace zoomreplay::test {
namespace {

struct Shown {
    char const* name;
    std::string_view text;
    std::string_view shown;
};

void PrintTo(Shown const& shown, std::ostream* out) {
    *out << shown.name;
}

class TerminalTextTest : public testing::TestWithParam<Shown> {};

TEST_P(TerminalTextTest, LosesWhatATerminalObeys) {
    EXPECT_EQ(terminalText(GetParam().text, '?'), GetParam().shown);
}

constexpr Shown kShown[] = {
    {"letters of one to four bytes", "a\u00E4\u20AC\U0001F4F7~", "a\u00E4\u20AC\U0001F4F7~"},
    {"control characters", "a\x1b[2J\n\x7F", "a?[2J??"},
    {"control characters of two bytes", "\u0080\u009B\u009F\u00A0", "???\u00A0"},
    {"text turned around", "\u202Egpj.exe\u202C \u2066x\u2069 \u200F", "?gpj.exe? ?x? ?"},
    {"text that cannot be seen", "a\u00ADb\u200Bc\uFEFFd\u2060e\U000E0041f", "a?b?c?d?e?f"},
    {"line ends of Unicode", "a\u2028b\u2029c", "a?b?c"},
    {"neighbours of what is replaced", "\u200A\u2010\u2027\u202F\u205F\u2070",
     "\u200A\u2010\u2027\u202F\u205F\u2070"},
    {"bytes alone", "a\x9B\xC3 \xFF", "a?? ?"},
    {"characters cut off", "\xE2\x82", "??"},
    {"a longer form of a control character", "\xC0\x9B\xE0\x80\x9B", "?????"},
    {"half of a surrogate pair", "\xED\xA0\x80", "???"},
    {"beyond all characters", "\xF4\x90\x80\x80", "????"},
};
INSTANTIATE_TEST_SUITE_P(All, TerminalTextTest, testing::ValuesIn(kShown));

class MessageTest : public ToolTest {};

TEST_F(MessageTest, NamesAreShownSafely) {
    EXPECT_EQ(run({"a\u009B\u202E\x9B\u00E4"}).err,
              "a???\u00E4: cannot open: No such file or directory\n");
    EXPECT_EQ(run({std::string(1001, 'a')}).err, std::string(1000, 'a') + "...\n");
    EXPECT_THAT(replay("{\"op\":\"onRequestDone\",\"request\u009BNo\":1}\n").err,
                testing::EndsWith("there is request?No\n"));
}

}  // namespace
}  // namespace zoomreplay::test
