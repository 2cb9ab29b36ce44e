#include "Compare.h"

#include <algorithm>
#include <utility>

#include "ResultWriter.h"
#include "base/Messages.h"
#include "scenario/json/LineError.h"

namespace zoomreplay {

using namespace scenario;

namespace {

constexpr size_t kMostPrinted = 10;
constexpr size_t kLookAhead = 64;  // results: a dozen requests

// What follows the line number in our own spelling; the whole text in another one.
std::string_view withoutLine(std::string_view text) {
    constexpr std::string_view kStart = "{\"line\": ";
    if (text.substr(0, kStart.size()) != kStart) {
        return text;
    }
    return text.substr(std::min(text.find(','), text.size()));
}

/// @return the operation of an expected result. @throws LineError
std::string checkedOp(Json const& json) {
    auto const line = json.find("line");
    if (line == json.end()) {
        throw LineError("line: missing; results have it, a scenario does not");
    }
    if (!line->is_number_unsigned()) {
        throw LineError("line: must be the number of a scenario line");
    }
    auto const op = json.find("op");
    if (op == json.end() || !op->is_string()) {
        throw LineError("op: must be a string");
    }
    return op->get<std::string>();
}

}  // namespace

Compare::Compare(LineReader& expected, std::string scenario, Tell tell)
    : mReader(expected), mScenario(std::move(scenario)), mTell(std::move(tell)) {}

void Compare::prepare(uint64_t /*line*/, Input const& input) {
    mRequest = requestOf(input);
}

void Compare::consume(Outcome const& outcome) {
    Result result{
        std::exchange(mRequest, std::nullopt), outcome.line, std::string(outcome.op), {}, {}, {}};
    appendResultLine(result.text, outcome);
    mActual.push_back(std::move(result));
    pairAll();
}

void Compare::finish() {
    mIsActualOver = true;
    pairAll();
    for (fill(); !mExpected.empty(); fill()) {
        take(true, false);
    }

    for (std::string const& message : mFirst) {
        complain(message);
    }
    if (mMessages > mFirst.size()) {
        complain("and " + std::to_string(mMessages - mFirst.size()) + " more differences");
    }
    if (mDifferences > 0) {
        complain(std::to_string(mDifferences) +
                 (mDifferences == 1 ? " result differs" : " results differ") + ", in " +
                 std::to_string(mRequests.size()) +
                 (mRequests.size() == 1 ? " request" : " requests"));
    }
}

void Compare::fill() {
    while (!mIsExpectedOver && mExpected.size() < kLookAhead) {
        auto const line = mReader.next();
        mIsExpectedOver = !line.has_value();
        if (line.has_value()) {
            mExpected.push_back({{}, mReader.lineNumber(), {}, std::string(*line), {}, {}});
        }
    }
}

void Compare::pairAll() {
    while (!mActual.empty()) {
        fill();
        if (areHeadsEqual()) {
            mExpected.pop_front();
            mActual.pop_front();
            continue;
        }
        if (!mIsActualOver && mActual.size() < kLookAhead) {
            return;  // what comes next tells whether something was added or left out
        }
        pairStretch();
    }
}

bool Compare::areHeadsEqual() {
    if (mExpected.empty()) {
        return false;
    }
    Result& expected = mExpected.front();
    Result& actual = mActual.front();
    if (withoutLine(expected.text) == withoutLine(actual.text)) {
        return true;
    }
    parse(expected);
    parse(actual);
    return expected.op == actual.op && differencesOf(*expected.json, *actual.json).empty();
}

// The stretch's second half is left for the next one, which knows more of what follows it.
void Compare::pairStretch() {
    auto const pairings = align({mExpected.size(), mActual.size(), mIsExpectedOver, mIsActualOver},
                                [this](size_t expected, size_t actual) {
                                    return likeness(mExpected[expected], mActual[actual]);
                                });
    bool const isLast = mIsExpectedOver && mIsActualOver;
    size_t const count = isLast ? pairings.size() : std::min(pairings.size(), kLookAhead / 2);
    for (size_t i = 0; i < count; ++i) {
        take(pairings[i] != Pairing::OnlyActual, pairings[i] != Pairing::OnlyExpected);
    }
}

Likeness Compare::likeness(Result& expected, Result& actual) const {
    parse(expected);
    parse(actual);
    if (expected.op != actual.op) {
        return Likeness::Foreign;
    }
    return expected.essence == actual.essence ? Likeness::Same : Likeness::Changed;
}

void Compare::parse(Result& result) const {
    if (result.json.has_value()) {
        return;
    }
    bool const isExpected = result.op.empty();
    try {
        result.json = parseObject(result.text);
        if (isExpected) {
            result.op = checkedOp(*result.json);
        }
    } catch (LineError const& e) {
        throw UserError(placeOf(result, isExpected) + ": " + e.what());
    }
    result.essence = essenceOf(*result.json);
}

std::string Compare::placeOf(Result const& result, bool isExpected) const {
    return (isExpected ? mReader.file().name() : mScenario) + ':' + std::to_string(result.line);
}

void Compare::take(bool hasExpected, bool hasActual) {
    Difference difference;
    Result expected{};
    Result actual{};
    if (hasExpected) {
        expected = std::move(mExpected.front());
        mExpected.pop_front();
        parse(expected);
    }
    if (hasActual) {
        actual = std::move(mActual.front());
        mActual.pop_front();
    }
    if (hasExpected && hasActual) {
        parse(actual);
        difference.fields = differencesOf(*expected.json, *actual.json);
        if (difference.fields.empty()) {
            return;
        }
    }
    difference.request = actual.request;
    difference.op = hasActual ? actual.op : expected.op;
    difference.line = actual.line;
    difference.expected = expected.text;
    difference.actual = actual.text;
    tell(difference, hasActual ? placeOf(actual, false) : placeOf(expected, true));
}

void Compare::tell(Difference const& difference, std::string const& place) {
    ++mDifferences;
    if (difference.request.has_value()) {
        mRequests.insert(*difference.request);
    }
    if (mTell) {
        mTell(difference);
    }

    std::string start = place + ": ";
    if (difference.request.has_value()) {
        start += "request " + std::to_string(*difference.request) + ": ";
    }
    start.append(difference.op).append(": ");
    if (difference.actual.empty()) {
        print(start + "expected a result, got none");
    } else if (difference.expected.empty()) {
        print(start + "expected no result, got one");
    }
    for (auto const& [path, expected, actual] : difference.fields) {
        std::string message = start + path;
        print(message.append(": expected ").append(expected).append(", got ").append(actual));
    }
}

void Compare::print(std::string message) {
    ++mMessages;
    if (mFirst.size() < kMostPrinted) {
        mFirst.push_back(std::move(message));
    }
}

}  // namespace zoomreplay
