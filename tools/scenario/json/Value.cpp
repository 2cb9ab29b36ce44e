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
std::optional<Integer> integerOf(Json const& json) {
    constexpr float kBeyondAll = 0x1p63F;
    if (json.is_number_unsigned()) {
        return Integer{.magnitude = json.get<uint64_t>()};
    }
    if (json.is_number_integer()) {
        return Integer{.isNegative = true,
                       .magnitude = 0 - static_cast<uint64_t>(json.get<int64_t>())};
    }
    if (json.is_string()) {
        return parseInteger(json.get_ref<std::string const&>());
    }
    if (json.is_number_float() && std::abs(json.get<float>()) >= kBeyondAll) {
        return Integer{.isNegative = json.get<float>() < 0.0F,
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
    store(value, "", integerOf(value.json()), result);
}

}  // namespace

Json::object_t const& Value::object() const {
    if (!mJson.is_object()) {
        fail("must be an object");
    }
    return mJson.get_ref<Json::object_t const&>();
}

Json::array_t const& Value::array() const {
    if (!mJson.is_array()) {
        fail("must be an array");
    }
    return mJson.get_ref<Json::array_t const&>();
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
    if (mParent->mJson.is_array()) {
        return around + '[' + std::to_string(mIndex) + ']';
    }
    return around.empty() ? std::string(mName) : around + '.' + std::string(mName);
}

void read(Value const& value, bool& result) {
    if (!value.json().is_boolean()) {
        value.fail("must be true or false");
    }
    result = value.json().get<bool>();
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
    Json const& json = value.json();
    using Limits = std::numeric_limits<float>;
    if (json.is_number()) {
        result = floatOf(json);
    } else if (json == "nan") {
        result = Limits::quiet_NaN();
    } else if (json == "inf") {
        result = Limits::infinity();
    } else if (json == "-inf") {
        result = -Limits::infinity();
    } else {
        value.fail("must be a number, \"nan\", \"inf\" or \"-inf\"");
    }
}

void read(Value const& value, std::string& result) {
    if (!value.json().is_string()) {
        value.fail("must be a string");
    }
    result = value.json().get_ref<std::string const&>();
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
    return integerOf(value.json()).has_value();
}

void Fields::finish() const {
    if (mFound == mFields.size()) {
        return;
    }
    for (auto const& [name, json] : mFields) {
        if (std::find(mKnown.begin(), mKnown.end(), name) == mKnown.end()) {
            Value(json, mObject, name).fail("unknown field" + didYouMean(name, mKnown));
        }
    }
}

void Fields::failMissing(std::string_view name) const {
    std::vector<std::string_view> others;
    for (auto const& [other, json] : mFields) {
        if (std::find(mKnown.begin(), mKnown.end(), other) == mKnown.end()) {
            others.push_back(other);
        }
    }
    auto const misspelt = nearMiss(name, others);
    Value(mObject.json(), mObject, name)
        .fail(misspelt.empty() ? "missing" : "missing; there is " + std::string(misspelt));
}

}  // namespace scenario
