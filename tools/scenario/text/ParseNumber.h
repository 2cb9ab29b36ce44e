// Numbers out of texts that hold nothing else.
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
        T number = 0;
        char const* const end = text.data() + text.size();
        auto const [stop, error] = std::from_chars(text.data(), end, number);
        return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
    }
}

}  // namespace scenario
