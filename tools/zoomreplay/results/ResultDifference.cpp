#include "ResultDifference.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string_view>
#include <utility>

#include "scenario/text/JsonText.h"

namespace zoomreplay {

using namespace scenario;

namespace {

constexpr std::string_view kLogField = "log";

// Where and when a call was made is nothing that the library answered.
constexpr std::array<std::string_view, 3> kNoAnswer{"line", "t", "dur"};

// What stands behind these in a message differs between builds or runs: source lines, which may
// also be written as N, and addresses.
constexpr std::array<std::string_view, 4> kVolatile{"{#", ".cpp:", "Ptr:0x", "Mapper(0x"};

bool isVolatile(char c) {
    return c == 'N' || std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

std::string withoutVolatile(std::string text) {
    for (std::string_view const marker : kVolatile) {
        size_t place = text.find(marker);
        while (place != std::string::npos) {
            place += marker.size();
            size_t end = place;
            while (end < text.size() && isVolatile(text[end])) {
                ++end;
            }
            text.erase(place, end - place);
            place = text.find(marker, place);
        }
    }
    return text;
}

bool isSameNumber(Json const& a, Json const& b) {
    float const x = floatOf(a);
    float const y = floatOf(b);
    if (std::signbit(x) != std::signbit(y)) {
        return false;
    }
    return a.is_number_float() || b.is_number_float() ? x == y : a == b;
}

// For everything but objects.
bool isSame(Json const& a, Json const& b) {
    if (a.is_number() && b.is_number()) {
        return isSameNumber(a, b);
    }
    if (a.is_string() && b.is_string()) {
        return a == b ||
               withoutVolatile(a.get<std::string>()) == withoutVolatile(b.get<std::string>());
    }
    if (a.is_array() && b.is_array()) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), isSame);
    }
    return a == b;
}

std::string show(Json const& value) {
    constexpr size_t kLongest = 160;
    if (value.is_number_float() || (value.is_number() && value == 0)) {
        std::string text;
        appendJson(text, floatOf(value));  // unlike dump, tells the zeros apart
        return text;
    }
    if (value.is_array()) {
        std::string text = "[";
        for (Json const& item : value) {
            text.append(text.size() > 1 ? ", " : "").append(show(item));
        }
        return text + ']';
    }
    std::string const text = value.dump();
    return text.size() > kLongest ? text.substr(0, kLongest) + "..." : text;
}

class Differences {
 public:
    void compareFields(std::string const& path, Json const& expected, Json const& actual);

    std::vector<FieldDifference> take() { return std::move(mFound); }

 private:
    void compareValues(std::string const& path, Json const& expected, Json const& actual);

    std::vector<FieldDifference> mFound;
};

void Differences::compareFields(std::string const& path, Json const& expected, Json const& actual) {
    bool const isTop = path.empty();
    auto const pathOf = [&](std::string const& name) { return isTop ? name : path + '.' + name; };
    auto const isIgnored = [&](std::string const& name) {
        return isTop && std::find(kNoAnswer.begin(), kNoAnswer.end(), name) != kNoAnswer.end();
    };
    auto const isOptional = [&](std::string const& name) { return isTop && name == kLogField; };

    for (auto const& [name, value] : expected.items()) {
        if (isIgnored(name)) {
            continue;
        }
        auto const counterpart = actual.find(name);
        if (counterpart != actual.end()) {
            compareValues(pathOf(name), value, *counterpart);
        } else if (!isOptional(name)) {
            mFound.push_back({pathOf(name), show(value), "nothing"});
        }
    }
    for (auto const& [name, value] : actual.items()) {
        if (!expected.contains(name) && !isOptional(name) && !isIgnored(name)) {
            mFound.push_back({pathOf(name), "nothing", show(value)});
        }
    }
}

void Differences::compareValues(std::string const& path, Json const& expected, Json const& actual) {
    if (expected.is_object() && actual.is_object()) {
        compareFields(path, expected, actual);
        return;
    }
    bool const areRecords = expected.is_array() && actual.is_array() &&
                            expected.size() == actual.size() && !expected.empty() &&
                            expected.front().is_object();
    if (areRecords) {
        for (size_t i = 0; i < expected.size(); ++i) {
            compareValues(path + '[' + std::to_string(i) + ']', expected[i], actual[i]);
        }
        return;
    }
    if (!isSame(expected, actual)) {
        mFound.push_back({path, show(expected), show(actual)});
    }
}

}  // namespace

std::vector<FieldDifference> differencesOf(Json const& expected, Json const& actual) {
    Differences differences;
    differences.compareFields("", expected, actual);
    return differences.take();
}

std::string essenceOf(Json result) {
    result.erase(std::string(kLogField));
    for (std::string_view const name : kNoAnswer) {
        result.erase(std::string(name));
    }
    return result.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace zoomreplay
