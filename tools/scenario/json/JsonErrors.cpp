// Takes the JSON library's messages apart. They are sentences of its version 3, which the tests of
// bad lines hold it to. What was expected could be told from the text before the error and the
// containers that are open, without them; what is wrong inside of a text or a number could not, and
// that would be a second parser beside these few words.
#include "scenario/json/JsonErrors.h"

namespace scenario {
namespace {

constexpr std::string_view kUnexpected = "unexpected ";

std::string_view upTo(std::string_view text, std::string_view end) {
    return text.substr(0, text.find(end));
}

// All bytes of the UTF-8 character there.
std::string characterAt(std::string_view line, size_t position) {
    if (position > line.size()) {
        return "end of line";
    }
    auto const isFollowing = [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
    };
    size_t end = position;
    while (end < line.size() && isFollowing(line[end])) {
        ++end;
    }
    return std::string("'").append(line.substr(position - 1, end - position + 1)).append("'");
}

/// @param parsed what the parser was at, in its words.
std::string_view expectation(std::string_view parsed) {
    if (parsed == "object key") {
        return "a name in double quotes";
    }
    if (parsed == "object separator") {
        return "':'";
    }
    if (parsed == "object") {
        return "',' or '}'";
    }
    if (parsed == "array") {
        return "',' or ']'";
    }
    return "a number, true, false or a text in double quotes";
}

}  // namespace

std::string explainJsonError(std::string_view message, std::string_view line, size_t position) {
    constexpr std::string_view kNumberEnd = "] ";  // of the parser's error number
    constexpr std::string_view kSyntax = "syntax error while parsing ";
    constexpr std::string_view kReason = " - ";
    auto const syntax = message.find(kSyntax);
    auto const reasonBegin = message.find(kReason);
    if (syntax == std::string_view::npos || reasonBegin == std::string_view::npos) {
        return std::string(message.substr(message.find(kNumberEnd) + kNumberEnd.size()));
    }

    std::string_view const parsed = upTo(message.substr(syntax + kSyntax.size()), kReason);
    std::string_view const reason = message.substr(reasonBegin + kReason.size());
    std::string const place = "column " + std::to_string(position) + ": ";
    bool const isUnknownWord = upTo(reason, ";") == "invalid literal";
    if (reason.substr(0, kUnexpected.size()) != kUnexpected && !isUnknownWord) {
        return place + std::string(upTo(reason, "; last read"));  // a text or number is not whole
    }

    bool const isToken = !isUnknownWord && position <= line.size();
    std::string const found = isToken ? std::string(upTo(reason, ";").substr(kUnexpected.size()))
                                      : characterAt(line, position);
    if (found == "'x'" && line[position - 2] == '0') {
        return place + "a hexadecimal number stands in double quotes";
    }
    bool const isWhole = reason.find("; expected end of input") != std::string_view::npos;
    return place + std::string(kUnexpected) + found + "; expected " +
           std::string(isWhole ? "end of line" : expectation(parsed));
}

std::string explainNoObject(std::string_view line) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (line.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        return "begins with a byte order mark; save the file as UTF-8 without one";
    }
    return "must be a JSON object in one line, or a comment that begins with //";
}

}  // namespace scenario
