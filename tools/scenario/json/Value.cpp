// Converts JSON values, and says with their path what is wrong with them.
#include "scenario/json/Value.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>

#include "scenario/json/LineError.h"
#include "scenario/json/NearMiss.h"

namespace scenario {
namespace {

// Wide enough for every integer field.
struct Integer {
    bool isNegative = false;
    bool isHexadecimal = false;
    uint64_t magnitude = 0;
};

std::optional<Integer> parseInteger(std::string_view text) {
    Integer integer;
    constexpr std::string_view kHexadecimal = "0x";
    if (text.substr(0, kHexadecimal.size()) == kHexadecimal) {
        integer.isHexadecimal = true;
        text.remove_prefix(kHexadecimal.size());
    } else if (!text.empty() && text.front() == '-') {
        integer.isNegative = true;
        text.remove_prefix(1);
    }

    char const* const end = text.data() + text.size();
    int const base = integer.isHexadecimal ? 16 : 10;
    auto const [stop, error] = std::from_chars(text.data(), end, integer.magnitude, base);
    if (error == std::errc::result_out_of_range && stop == end) {
        integer.magnitude = std::numeric_limits<uint64_t>::max();  // beyond any field's range...
        integer.isHexadecimal = false;                             // ...and no bit pattern
        return integer;
    }
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return integer;
}

// A number of more than 64 bits is read as a float, and is beyond any field's range.
std::optional<Integer> integerOf(Value const& value) {
    constexpr float kBeyondAll = 0x1p63F;
    if (auto const* positive = value.as<uint64_t>()) {
        return Integer{.magnitude = *positive};
    }
    if (auto const* negative = value.as<int64_t>()) {
        return Integer{.isNegative = true, .magnitude = 0 - static_cast<uint64_t>(*negative)};
    }
    if (auto const* text = value.as<std::string_view>()) {
        return parseInteger(*text);
    }
    auto const* const number = value.as<float>();
    if (number != nullptr && std::abs(*number) >= kBeyondAll) {
        return Integer{.isNegative = *number < 0.0F,
                       .magnitude = std::numeric_limits<uint64_t>::max()};
    }
    return std::nullopt;
}

template <typename T>
std::optional<T> fit(Integer integer) {
    constexpr auto kMax = static_cast<uint64_t>(std::numeric_limits<T>::max());
    if (std::is_same_v<T, int64_t> && integer.isHexadecimal) {
        return static_cast<T>(integer.magnitude);
    }
    if (!integer.isNegative) {
        return integer.magnitude <= kMax ? std::optional(static_cast<T>(integer.magnitude))
                                         : std::nullopt;
    }
    if (std::is_same_v<T, uint32_t> && integer.magnitude == 1) {
        return std::numeric_limits<T>::max();
    }
    uint64_t const lowest = std::is_signed_v<T> ? kMax + 1 : 0;
    return integer.magnitude <= lowest ? std::optional(static_cast<T>(0 - integer.magnitude))
                                       : std::nullopt;
}

// what: of the value or its key that the integer is, for messages.
template <typename T>
void store(Value const& value, std::string const& what, std::optional<Integer> integer, T& result) {
    if (!integer.has_value()) {
        value.fail(what + "must be an integer");
    }
    auto const fitting = fit<T>(*integer);
    if (!fitting.has_value()) {
        value.fail(what + "out of range, must be " + std::to_string(std::numeric_limits<T>::min()) +
                   " to " + std::to_string(std::numeric_limits<T>::max()) +
                   (std::is_same_v<T, uint32_t> ? " or -1" : ""));
    }
    result = *fitting;
}

template <typename T>
void storeNumber(Value const& value, T& result) {
    store(value, "", integerOf(value), result);
}

}  // namespace

Members const& Value::object() const {
    auto const* const members = as<Members>();
    if (members == nullptr) {
        fail("must be an object");
    }
    return *members;
}

Elements const& Value::array() const {
    auto const* const elements = as<Elements>();
    if (elements == nullptr) {
        fail("must be an array");
    }
    return *elements;
}

void Value::fail(std::string const& what) const {
    std::string const place = path();
    throw LineError(place.empty() ? what : place + ": " + what);
}

std::string Value::path() const {
    if (mParent == nullptr) {
        return {};
    }
    std::string const around = mParent->path();
    if (mParent->as<Elements>() != nullptr) {
        return around + '[' + std::to_string(mIndex) + ']';
    }
    return around.empty() ? std::string(mName) : around + '.' + std::string(mName);
}

void read(Value const& value, bool& result) {
    auto const* const answer = value.as<bool>();
    if (answer == nullptr) {
        value.fail("must be true or false");
    }
    result = *answer;
}

void read(Value const& value, uint8_t& result) {
    storeNumber(value, result);
}
void read(Value const& value, uint16_t& result) {
    storeNumber(value, result);
}
void read(Value const& value, uint32_t& result) {
    storeNumber(value, result);
}
void read(Value const& value, int32_t& result) {
    storeNumber(value, result);
}
void read(Value const& value, int64_t& result) {
    storeNumber(value, result);
}

// Stream ids are unsigned in one of the library's tables, and written alike everywhere.
void read(Value const& value, uint64_t& result) {
    int64_t streamId = 0;
    read(value, streamId);
    result = static_cast<uint64_t>(streamId);
}

void read(Value const& value, float& result) {
    using Limits = std::numeric_limits<float>;
    std::string_view const text = value.as<std::string_view>() != nullptr
                                      ? *value.as<std::string_view>()
                                      : std::string_view();
    if (auto const* number = value.as<float>()) {
        result = *number;
    } else if (auto const* positive = value.as<uint64_t>()) {
        result = static_cast<float>(*positive);
    } else if (auto const* negative = value.as<int64_t>()) {
        result = *negative == 0 ? -0.0F : static_cast<float>(*negative);
    } else if (text == "nan") {
        result = Limits::quiet_NaN();
    } else if (text == "inf") {
        result = Limits::infinity();
    } else if (text == "-inf") {
        result = -Limits::infinity();
    } else {
        value.fail("must be a number, \"nan\", \"inf\" or \"-inf\"");
    }
}

void read(Value const& value, std::string_view& result) {
    auto const* const text = value.as<std::string_view>();
    if (text == nullptr) {
        value.fail("must be a string");
    }
    result = *text;
}

void read(Value const& value, std::string& result) {
    std::string_view text;
    read(value, text);
    result = text;
}

void readKey(Value const& entry, std::string_view name, uint8_t& result) {
    store(entry, "key: ", parseInteger(name), result);
}

void readKey(Value const& entry, std::string_view name, uint16_t& result) {
    store(entry, "key: ", parseInteger(name), result);
}

void readKey(Value const& entry, std::string_view name, uint32_t& result) {
    store(entry, "key: ", parseInteger(name), result);
}

void readKey(Value const& entry, std::string_view name, int64_t& result) {
    store(entry, "key: ", parseInteger(name), result);
}

bool isInteger(Value const& value) {
    return integerOf(value).has_value();
}

void Fields::finish() const {
    if (mFound == mMembers.size()) {
        return;
    }
    for (auto const& [name, node] : mMembers) {
        if (std::find(mKnown.begin(), mKnown.end(), name) == mKnown.end()) {
            Value(node, mObject, name).fail("unknown field" + didYouMean(name, mKnown));
        }
    }
}

void Fields::failMissing(std::string_view name) const {
    std::string problem = "missing";
    for (auto const& [other, node] : mMembers) {
        bool const isKnown = std::find(mKnown.begin(), mKnown.end(), other) != mKnown.end();
        if (!isKnown && !nearMiss(other, {&name, 1}).empty()) {
            problem += "; there is " + std::string(other);
            break;
        }
    }
    Value({}, mObject, name).fail(problem);
}

}  // namespace scenario
