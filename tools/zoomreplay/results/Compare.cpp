#include "Compare.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "ResultWriter.h"
#include "base/Messages.h"
#include "scenario/json/LineError.h"

namespace zoomreplay {

using namespace scenario;

namespace {

constexpr size_t kMostPrinted = 10;
constexpr size_t kLookBack = 64;  // results: more than any request has

// What a pipeline begins each request with.
constexpr std::string_view kDeposit = "setRunTimeCropNeedData";

// What follows the line number in our own spelling; the whole text in another one.
std::string_view withoutLine(std::string_view text) {
    constexpr std::string_view kStart = "{\"line\": ";
    if (text.substr(0, kStart.size()) != kStart) {
        return text;
    }
    return text.substr(std::min(text.find(','), text.size()));
}

/// @throws LineError the result lacks what every one has.
void checkResult(Json const& json) {
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
}

bool isLogged(Json const& json) {
    return json.contains("log");
}

std::string const& opOf(Json const& json) {
    return json["op"].get_ref<std::string const&>();
}

Entry entryOf(Json json, bool isStart) {
    std::hash<std::string> const hash;
    uint64_t const kind = hash(opOf(json));
    return {kind, hash(essenceOf(std::move(json))), isStart};
}

std::string counted(uint64_t count, std::string const& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

}  // namespace

Compare::Compare(LineReader& expected, std::string scenario, Tell tell)
    : mReader(expected), mScenario(std::move(scenario)), mTell(std::move(tell)) {}

void Compare::prepare(uint64_t /*line*/, Input const& input) {
    mRequest = requestOf(input);
}

void Compare::consume(Outcome const& outcome) {
    Text actual{std::exchange(mRequest, std::nullopt), outcome.line, {}};
    appendResultLine(actual.text, outcome);
    if (!mAreAlike) {
        keepActual(actual);
        return;
    }
    auto expected = nextExpected();
    if (expected.has_value() && areAlike(*expected, actual)) {
        mAlike.push_back({std::move(*expected), std::move(actual)});
        if (mAlike.size() > kLookBack) {
            mAlike.pop_front();
        }
        return;
    }
    partWays();
    if (expected.has_value()) {
        keepExpected(*expected);
    }
    keepActual(actual);
}

void Compare::finish() {
    auto expected = nextExpected();
    if (expected.has_value()) {
        partWays();
    }
    for (; expected.has_value(); expected = nextExpected()) {
        keepExpected(*expected);
    }
    tellAll();
}

void Compare::breakOff() {
    while (mExpected.results.size() < mActual.results.size()) {
        auto const expected = nextExpected();
        if (!expected.has_value()) {
            break;
        }
        keepExpected(*expected);
    }
    tellAll();
}

std::optional<Compare::Text> Compare::nextExpected() {
    auto const line = mReader.next();
    return line.has_value() ? std::optional(Text{{}, mReader.lineNumber(), std::string(*line)})
                            : std::nullopt;
}

bool Compare::areAlike(Text const& expected, Text const& actual) const {
    return withoutLine(expected.text) == withoutLine(actual.text) ||
           differencesOf(parseExpected(expected), parseObject(actual.text)).empty();
}

// What is added or left out may turn out to begin a little earlier.
void Compare::partWays() {
    if (std::exchange(mAreAlike, false)) {
        for (auto const& [expected, actual] : mAlike) {
            keepExpected(expected);
            keepActual(actual);
        }
        mAlike.clear();
    }
}

void Compare::keepExpected(Text const& text) {
    Json json = parseExpected(text);
    mExpected.results.push_back({{}, text.line, mTexts.add(text.text), isLogged(json)});
    mExpected.entries.push_back(entryOf(std::move(json), false));
}

void Compare::keepActual(Text const& text) {
    Json json = parseObject(text.text);
    bool const isOther = text.request.has_value() && text.request != mLatest;
    bool const isStart = isOther || opOf(json) == kDeposit;
    mLatest = isOther ? text.request : mLatest;
    mActual.results.push_back({text.request, text.line, mTexts.add(text.text), isLogged(json)});
    mActual.entries.push_back(entryOf(std::move(json), isStart));
}

Json Compare::parseExpected(Text const& text) const {
    try {
        Json json = parseObject(text.text);
        checkResult(json);
        return json;
    } catch (LineError const& e) {
        throw UserError(mReader.file().name() + ':' + std::to_string(text.line) + ": " + e.what());
    }
}

// Once: what could not be told is not told again.
void Compare::tellAll() {
    if (std::exchange(mIsTold, true)) {
        return;
    }
    size_t expected = 0;
    size_t actual = 0;
    for (Pairing const pairing : align(mExpected.entries, mActual.entries)) {
        switch (pairing) {
            case Pairing::Both:
                tellPair(expected++, actual++);
                break;
            case Pairing::OnlyExpected:
                tellMissing(expected++);
                break;
            case Pairing::OnlyActual:
                tellNew(actual++);
                break;
        }
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
                 counted(mRequests.size() + mMissingRequests, "request"));
    }
}

void Compare::tellPair(size_t expected, size_t actual) {
    Result const& expectedResult = mExpected.results[expected];
    Result const& actualResult = mActual.results[actual];
    bool const areLogged = expectedResult.isLogged && actualResult.isLogged;
    if (!areLogged && mExpected.entries[expected].content == mActual.entries[actual].content) {
        return;
    }
    Difference difference;
    difference.expected = mTexts.read(expectedResult.text);
    difference.actual = mTexts.read(actualResult.text);
    Json const json = parseObject(difference.actual);
    difference.fields = differencesOf(parseObject(difference.expected), json);
    if (difference.fields.empty()) {
        return;
    }
    difference.request = actualResult.request;
    difference.op = opOf(json);
    difference.line = actualResult.line;
    tell(difference, placeOf(mScenario, actualResult));
}

void Compare::tellMissing(size_t expected) {
    Result const& result = mExpected.results[expected];
    Difference difference;
    difference.expected = mTexts.read(result.text);
    Json const json = parseObject(difference.expected);
    difference.op = opOf(json);
    mMissingRequests += difference.op == kDeposit ? 1U : 0U;
    tell(difference, placeOf(mReader.file().name(), result));
}

void Compare::tellNew(size_t actual) {
    Result const& result = mActual.results[actual];
    Difference difference;
    difference.actual = mTexts.read(result.text);
    Json const json = parseObject(difference.actual);
    difference.request = result.request;
    difference.op = opOf(json);
    difference.line = result.line;
    tell(difference, placeOf(mScenario, result));
}

std::string Compare::placeOf(std::string const& file, Result const& result) {
    return file + ':' + std::to_string(result.line);
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
