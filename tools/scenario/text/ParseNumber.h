// Numbers out of texts.
#pragma once

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace scenario {

/// Takes a whole number in decimal digits, for signed types with a minus sign, off the beginning of
/// a text. Empty, and the text as it was, where there is none or it is beyond the type's range.
template <typename T>
std::optional<T> takeNumber(std::string_view& text) {
    static_assert(std::is_integral_v<T>);
    T number = 0;
    auto const [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{}) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<size_t>(stop - text.data()));
    return number;
}

/// Reads a whole text as a decimal number: digits, for signed types with a minus sign, for floats
/// with fraction and exponent. Empty when it is something else, beyond the type's range or not
/// finite.
template <typename T>
std::optional<T> parseNumber(std::string_view text) {
    if constexpr (std::is_floating_point_v<T>) {
        // Not every standard library of ours has from_chars for floats, and strtof alone takes
        // more: blanks, names, hexadecimal digits.
        if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string_view::npos) {
            return std::nullopt;
        }
        std::string const word(text);
        char* stop = nullptr;
        float const number = std::strtof(word.c_str(), &stop);
        bool const isWhole = stop == word.c_str() + word.size();
        return isWhole && std::isfinite(number) ? std::optional<T>(number) : std::nullopt;
    } else {
        auto const number = takeNumber<T>(text);
        return text.empty() ? number : std::nullopt;
    }
}

}  // namespace scenario
