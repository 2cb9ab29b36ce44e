// Writes single values as JSON.
#include "scenario/text/JsonText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>

namespace scenario {
namespace {

template <typename Integer>
void appendChars(std::string& out, Integer value, int base = 10) {
    std::array<char, 32> text;  // to_chars fills what is used
    auto const [end, error] = std::to_chars(text.data(), text.data() + text.size(), value, base);
    out.append(text.data(), end);
}

void appendHexadecimal(std::string& out, uint64_t bits) {
    out += "0x";
    appendChars(out, bits, 16);
}

template <typename Key>
void appendQuotedKey(std::string& out, Key key) {
    out += '"';
    appendKey(out, key);
    out += '"';
}

/// A positive number: 0.digits times ten to the power of point.
struct Decimal {
    std::string digits;
    int point = 0;
};

// Most numbers are whole or have few decimals, and are found by counting thousandths. A float
// tells all numbers of six digits apart, so that no shorter one is the same float.
std::optional<Decimal> sixDigitDecimal(float positive) {
    double const thousandths = std::round(static_cast<double>(positive) * 1000);
    if (thousandths < 1 || thousandths >= 1e6 ||
        static_cast<float>(thousandths / 1000) != positive) {
        return std::nullopt;
    }
    Decimal decimal;
    appendChars(decimal.digits, static_cast<int32_t>(thousandths));
    decimal.point = static_cast<int>(decimal.digits.size()) - 3;
    return decimal;
}

using NumberText = std::array<char, 32>;

#ifdef __cpp_lib_to_chars
// The float below a power of two is half as far as the one above: to_chars may then have found a
// text with fewer digits that is not the nearest of them.
bool writeShortest(NumberText& text, float positive) {
    int exponent = 0;
    std::to_chars(text.data(), text.data() + text.size(), positive, std::chars_format::scientific);
    return std::frexp(positive, &exponent) != 0.5F;
}
#else
// Devices' libraries have no to_chars for floats.
bool writeShortest(NumberText& /*text*/, float /*positive*/) {
    return false;
}
#endif

// The C library is as exact, but slow.
void writeNearest(NumberText& text, float positive) {
    int precision = std::isnormal(positive) ? std::numeric_limits<float>::digits10 : 1;
    do {
        std::snprintf(text.data(), text.size(), "%.*e", precision - 1,
                      static_cast<double>(positive));
    } while (std::strtof(text.data(), nullptr) != positive && ++precision < 10);
}

// The C library writes the decimal point of the process's language: only the digits are used.
Decimal exactDecimal(float positive) {
    NumberText text{};
    if (!writeShortest(text, positive)) {
        writeNearest(text, positive);
    }
    std::string_view const all = text.data();
    auto const exponent = all.find('e');
    Decimal decimal;
    for (char const c : all.substr(0, exponent)) {
        if (c >= '0' && c <= '9') {
            decimal.digits += c;
        }
    }
    decimal.point = std::atoi(text.data() + exponent + 1) + 1;
    return decimal;
}

Decimal fewestDigits(float positive) {
    auto const quick = sixDigitDecimal(positive);
    Decimal decimal = quick.has_value() ? *quick : exactDecimal(positive);
    decimal.digits.resize(decimal.digits.find_last_not_of('0') + 1);
    return decimal;
}

void appendScientific(std::string& out, Decimal const& number) {
    auto const& digits = number.digits;
    out += digits.front();
    if (digits.size() > 1) {
        out.append(1, '.').append(digits, 1);
    }
    int const exponent = std::abs(number.point - 1);
    out.append(number.point < 1 ? "e-" : "e+").append(exponent < 10 ? "0" : "");
    appendChars(out, exponent);
}

void appendFraction(std::string& out, Decimal const& number) {
    auto const& [digits, point] = number;
    if (point <= 0) {
        out.append("0.").append(static_cast<size_t>(-point), '0').append(digits);
        return;
    }
    auto const whole = static_cast<size_t>(point);
    out.append(digits, 0, whole).append(1, '.').append(digits, whole);
}

/// In the shorter form, without an exponent where both are as long.
void appendFewestDigits(std::string& out, float value) {
    if (value < 0.0F) {
        out += '-';
    }
    auto const number = fewestDigits(std::fabs(value));
    auto const count = static_cast<int>(number.digits.size());
    bool const isWhole = number.point >= count;
    int const lengthScientific = count + (count > 1 ? 1 : 0) + 4;
    int const lengthOfFraction = count + (number.point > 0 ? 1 : 2 - number.point);
    if ((isWhole ? number.point : lengthOfFraction) > lengthScientific) {
        appendScientific(out, number);
    } else if (isWhole) {
        appendChars(out, static_cast<int64_t>(std::fabs(value)));  // all of its digits
    } else {
        appendFraction(out, number);
    }
}

template <typename Items>
void appendArray(std::string& out, Items const& items) {
    char const* separator = "";
    out += '[';
    for (auto const item : items) {
        out += separator;
        appendJson(out, item);
        separator = ", ";
    }
    out += ']';
}

}  // namespace

void appendJson(std::string& out, bool value) {
    out += value ? "true" : "false";
}
void appendJson(std::string& out, uint32_t value) {
    appendChars(out, value);
}
void appendJson(std::string& out, int32_t value) {
    appendChars(out, value);
}

void appendJson(std::string& out, uint16_t portKey) {
    appendQuotedKey(out, portKey);
}
void appendJson(std::string& out, int64_t streamId) {
    appendQuotedKey(out, streamId);
}
void appendJson(std::string& out, uint64_t streamId) {
    appendQuotedKey(out, static_cast<int64_t>(streamId));
}

void appendJson(std::string& out, float value) {
    if (std::isnan(value)) {
        out += "\"nan\"";
    } else if (std::isinf(value)) {
        out += value > 0.0F ? "\"inf\"" : "\"-inf\"";
    } else if (value == 0.0F) {
        out += std::signbit(value) ? "-0.0" : "0";  // readers take "-0" for an integer without sign
    } else {
        appendFewestDigits(out, value);
    }
}

void appendJson(std::string& out, NSCam::MSize const& size) {
    appendArray(out, std::array{size.w, size.h});
}

void appendJson(std::string& out, NSCam::MRect const& rect) {
    appendArray(out, std::array{rect.x, rect.y, rect.w, rect.h});
}

void appendJson(std::string& out, NSCam::MRectF const& rect) {
    appendArray(out, std::array{rect.x, rect.y, rect.w, rect.h});
}

void appendJson(std::string& out, std::vector<int32_t> const& numbers) {
    appendArray(out, numbers);
}

void appendJson(std::string& out, NSCam::Feature::ZoomOverrideMode mode) {
    appendChars(out, static_cast<int32_t>(mode));
}
void appendJson(std::string& out, NSCam::Feature::OverrideNotice notice) {
    appendChars(out, static_cast<int32_t>(notice));
}

void appendNumber(std::string& out, uint64_t value) {
    appendChars(out, value);
}

void appendKey(std::string& out, uint8_t port) {
    appendChars(out, port);
}
void appendKey(std::string& out, uint32_t sensorId) {
    appendChars(out, sensorId);
}
void appendKey(std::string& out, uint16_t portKey) {
    appendHexadecimal(out, portKey);
}

void appendKey(std::string& out, int64_t streamId) {
    appendHexadecimal(out, static_cast<uint64_t>(streamId));
}

}  // namespace scenario
