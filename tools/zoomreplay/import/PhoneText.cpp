#include "PhoneText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

#include "base/Messages.h"

namespace zoomreplay {
namespace {

std::optional<int32_t> parse(std::string const& word, int32_t /*type*/) {
    int32_t number = 0;
    char const* const end = word.data() + word.size();
    auto const [stop, error] = std::from_chars(word.data(), end, number);
    return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

// Not every standard library of ours has from_chars for floats. strtof alone takes more than a
// phone prints: names and hexadecimal digits.
std::optional<float> parse(std::string const& word, float /*type*/) {
    if (word.find_first_not_of("0123456789+-.eE") != std::string::npos) {
        return std::nullopt;
    }
    char* stop = nullptr;
    float const number = std::strtof(word.c_str(), &stop);
    bool const isWhole = stop == word.c_str() + word.size();
    return isWhole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

template <typename T>
std::optional<std::vector<T>> parseNumbers(std::string_view text) {
    constexpr std::string_view kBlanks = " \t[]";
    std::vector<T> numbers;
    auto begin = text.find_first_not_of(kBlanks);
    while (begin != std::string_view::npos) {
        text.remove_prefix(begin);
        std::string const word(text.substr(0, text.find_first_of(kBlanks)));
        auto const number = parse(word, T{});
        if (!number.has_value()) {
            return std::nullopt;
        }
        numbers.push_back(*number);
        text.remove_prefix(word.size());
        begin = text.find_first_not_of(kBlanks);
    }
    return numbers;
}

}  // namespace

std::optional<std::string_view> PhoneText::next() {
    bool const isFirst = mLines.bytesRead() == 0;
    auto const read = mLines.next();
    if (!read.has_value()) {
        return std::nullopt;
    }

    std::string_view line = *read;
    if (isFirst && (line.substr(0, 2) == "\xFF\xFE" || line.substr(0, 2) == "\xFE\xFF")) {
        throw UserError(file().name() + ": is UTF-16, as some shells write; save it as UTF-8");
    }
    if (isFirst) {
        skip(line, "\xEF\xBB\xBF");
    }
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

std::optional<std::vector<int32_t>> parseIntegers(std::string_view text) {
    return parseNumbers<int32_t>(text);
}

std::optional<std::vector<float>> parseFloats(std::string_view text) {
    return parseNumbers<float>(text);
}

bool skip(std::string_view& text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

}  // namespace zoomreplay
