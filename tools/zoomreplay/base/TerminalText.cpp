#include "TerminalText.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace zoomreplay {
namespace {

struct Character {
    char32_t code;
    size_t length;  // in bytes; 0 when they are not UTF-8
};

struct Range {
    char32_t first;
    char32_t last;
};

// Unicode's categories Cc, Cf, Zl and Zp, less what merely joins letters of a script, and the codes
// that are no characters in XML.
constexpr std::array kUnsafe{
    Range{0x0, 0x1F},        Range{0x7F, 0x9F},       Range{0xAD, 0xAD},
    Range{0x600, 0x605},     Range{0x61C, 0x61C},     Range{0x6DD, 0x6DD},
    Range{0x70F, 0x70F},     Range{0x890, 0x891},     Range{0x8E2, 0x8E2},
    Range{0x180E, 0x180E},   Range{0x200B, 0x200F},   Range{0x2028, 0x202E},
    Range{0x2060, 0x206F},   Range{0xFEFF, 0xFEFF},   Range{0xFFF9, 0xFFFB},
    Range{0xFFFE, 0xFFFF},   Range{0x110BD, 0x110BD}, Range{0x110CD, 0x110CD},
    Range{0x13430, 0x1343F}, Range{0x1BCA0, 0x1BCA3}, Range{0x1D173, 0x1D17A},
    Range{0xE0000, 0xE007F},
};

bool isUnsafe(char32_t code) {
    return std::any_of(kUnsafe.begin(), kUnsafe.end(), [code](Range const& range) {
        return code >= range.first && code <= range.last;
    });
}

// How many bytes a character has that begins with this one; 0 when none does.
size_t lengthFrom(uint8_t first) {
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first < 0xE0) {
        return 2;
    }
    if (first >= 0xE0 && first < 0xF0) {
        return 3;
    }
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

Character decode(std::string_view text) {
    constexpr std::array<char32_t, 5> kShortest{0, 0, 0x80, 0x800, 0x10000};  // by length
    auto const first = static_cast<uint8_t>(text.front());
    size_t const length = lengthFrom(first);
    if (length == 0 || length > text.size()) {
        return {0, 0};
    }
    char32_t code = length == 1 ? first : first & (0x7FU >> length);
    for (char const c : text.substr(1, length - 1)) {
        auto const byte = static_cast<uint8_t>(c);
        if ((byte & 0xC0U) != 0x80U) {
            return {0, 0};
        }
        code = code << 6U | (byte & 0x3FU);
    }
    bool const isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    bool const isCharacter = code >= kShortest[length] && code <= 0x10FFFF && !isSurrogate;
    return {code, isCharacter ? length : 0};
}

}  // namespace

std::string terminalText(std::string_view text, char replacement) {
    std::string result;
    while (!text.empty()) {
        Character const next = decode(text);
        if (next.length == 0 || isUnsafe(next.code)) {
            result += replacement;
        } else {
            result += text.substr(0, next.length);
        }
        text.remove_prefix(std::max<size_t>(next.length, 1));
    }
    return result;
}

}  // namespace zoomreplay
