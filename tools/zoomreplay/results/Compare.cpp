// Compares results field by field, and words the differences.
#include "Compare.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <utility>

#include "ResultWriter.h"
#include "base/Messages.h"
#include "scenario/json/LineError.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {

using namespace scenario;

namespace {

constexpr size_t kMostPrinted = 10;
constexpr std::string_view kLogField = "log";

// When a call was made is nothing that the library answered.
bool isTime(std::string_view field) {
    return field == "t" || field == "dur";
}

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

}  // namespace

Compare::Compare(LineReader& expected, std::string scenario)
    : mReader(expected), mScenario(std::move(scenario)) {}

void Compare::consume(Outcome const& outcome) {
    mActual.clear();
    appendResultLine(mActual, outcome);
    mLine = outcome.line;
    mOp = outcome.op;

    while (true) {
        if (!mPending.has_value()) {
            mPending = mReader.next();
        }
        if (mPending == mActual) {
            mPending.reset();
            return;
        }

        auto const expected = mPending.has_value() ? std::optional(parseExpected()) : std::nullopt;
        if (!expected.has_value() || expected->line > mLine) {
            report(mLine, mOp, "expected no result, got one");
            return;
        }
        mPending.reset();
        if (expected->line == mLine) {
            compareFields("", expected->result, parseObject(mActual));
            return;
        }
        report(expected->line, expected->op, "expected a result, got none");
    }
}

void Compare::finish() {
    for (; mPending.has_value() || (mPending = mReader.next()).has_value(); mPending.reset()) {
        auto const expected = parseExpected();
        report(expected.line, expected.op, "expected a result, got none");
    }

    for (std::string const& message : mFirst) {
        complain(message);
    }
    if (mDifferences > mFirst.size()) {
        complain("and " + std::to_string(mDifferences - mFirst.size()) + " more differences");
    }
}

Compare::Expected Compare::parseExpected() const {
    try {
        Json result = parseObject(*mPending);
        auto const line = result.find("line");
        if (line == result.end()) {
            throw LineError("line: missing; results have it, a scenario does not");
        }
        if (!line->is_number_unsigned()) {
            throw LineError("line: must be the number of a scenario line");
        }
        auto const op = result.find("op");
        if (op == result.end() || !op->is_string()) {
            throw LineError("op: must be a string");
        }
        return {line->get<uint64_t>(), op->get<std::string>(), std::move(result)};
    } catch (LineError const& e) {
        throw UserError(mReader.place() + ": " + e.what());
    }
}

void Compare::compareFields(std::string const& path, Json const& expected, Json const& actual) {
    auto const pathOf = [&](std::string const& name) {
        return path.empty() ? name : path + '.' + name;
    };
    auto const isOptional = [&](std::string const& name) {
        return path.empty() && name == kLogField;
    };

    auto const isIgnored = [&](std::string const& name) { return path.empty() && isTime(name); };

    for (auto const& [name, value] : expected.items()) {
        if (isIgnored(name)) {
            continue;
        }
        auto const counterpart = actual.find(name);
        if (counterpart != actual.end()) {
            compareValues(pathOf(name), value, *counterpart);
        } else if (!isOptional(name)) {
            reportValues(pathOf(name), show(value), "nothing");
        }
    }
    for (auto const& [name, value] : actual.items()) {
        if (!expected.contains(name) && !isOptional(name) && !isIgnored(name)) {
            reportValues(pathOf(name), "nothing", show(value));
        }
    }
}

void Compare::compareValues(std::string const& path, Json const& expected, Json const& actual) {
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
        reportValues(path, show(expected), show(actual));
    }
}

void Compare::reportValues(std::string const& path, std::string const& expected,
                           std::string const& actual) {
    report(mLine, mOp, path + ": expected " + expected + ", got " + actual);
}

void Compare::report(uint64_t line, std::string_view op, std::string const& what) {
    ++mDifferences;
    if (mFirst.size() < kMostPrinted) {
        mFirst.push_back(mScenario + ':' + std::to_string(line) + ": " + std::string(op) + ": " +
                         what);
    }
}

}  // namespace zoomreplay
