// Sorts the lines of a record into those that later calls need and those that they do not.
#include "LiveState.h"

#include "scenario/text/Line.h"

namespace zoomrecorder {

void LiveState::add(LineSubject subject, std::string_view text) {
    if (subject.kind == LineKind::Other) {
        return;
    }
    if (subject.kind == LineKind::Initialize) {
        mOpenings.clear();
        mOpenRequests.clear();
    }

    switch (subject.kind) {
        case LineKind::Deposit:
        case LineKind::RepeatingDeposit:
        case LineKind::P1Query:
            open(subject.number);
            break;
        case LineKind::Done:
            close(subject.number);
            break;
        case LineKind::Property:
        case LineKind::Sensor:
        case LineKind::Publish:
        case LineKind::Initialize:
        case LineKind::ConfigFspInfo:
        case LineKind::ConfigSensorInfo:
        case LineKind::ConfigSensorBehaviorInfo:
        case LineKind::Setting:
        case LineKind::MovedSetting:
        case LineKind::Metadata:
        case LineKind::Other:
            break;
    }
    mRecent.push_back({subject, std::string(text)});
    mRecentBytes += text.size();

    while (!mRecent.empty() && (mOpenings.empty() || mOldest < *mOpenings.begin())) {
        settleOldest();
    }
    while (mRecentBytes > mByteLimit) {
        closeOldest();
        settleOldest();
    }
}

size_t LiveState::size() const {
    size_t bytes = mRecentBytes;
    for (auto const& [subject, text] : mSettled) {
        bytes += text.size();
    }
    return bytes;
}

void LiveState::appendTo(std::string& out) const {
    for (auto const& [subject, text] : mSettled) {
        out += text;
        if (subject.first == LineKind::Deposit) {
            // Requests to come may repeat it, but its own request is done.
            scenario::Line(out, "onRequestDone").field("requestNo", mSettledDeposit).end();
        }
    }
    auto number = mOldest;
    for (auto const& line : mRecent) {
        // What was answered for a request that is done matters no more, and could not be asked
        // again without its deposit.
        if (line.subject.kind != LineKind::P1Query || isOpenSince(line.subject.number, number)) {
            out += line.text;
        }
        ++number;
    }
}

void LiveState::open(uint32_t requestNo) {
    auto const number = mOldest + mRecent.size();
    if (mOpenRequests.try_emplace(requestNo, number).second) {
        mOpenings.insert(number);
    }
}

bool LiveState::isOpenSince(uint32_t requestNo, uint64_t number) const {
    auto const request = mOpenRequests.find(requestNo);
    return request != mOpenRequests.end() && request->second <= number;
}

void LiveState::close(uint32_t requestNo) {
    auto const request = mOpenRequests.find(requestNo);
    if (request != mOpenRequests.end()) {
        mOpenings.erase(request->second);
        mOpenRequests.erase(request);
    }
}

void LiveState::closeOldest() {
    if (mOpenings.erase(mOldest) > 0) {
        mOpenRequests.erase(mRecent.front().subject.number);
    }
}

void LiveState::settleOldest() {
    Line line = std::move(mRecent.front());
    mRecent.pop_front();
    mRecentBytes -= line.text.size();
    ++mOldest;
    settle(std::move(line));
}

void LiveState::settle(Line line) {
    auto const [kind, number] = line.subject;
    if (kind == LineKind::Initialize) {
        mSettled.erase(mSettled.lower_bound({LineKind::Initialize, 0}), mSettled.end());
    }
    if (kind == LineKind::Setting) {
        mSettled.erase({LineKind::MovedSetting, 0});
    }
    if (kind == LineKind::Deposit) {
        mSettledDeposit = number;
    }

    bool const isPerNumber = kind == LineKind::Property || kind == LineKind::Sensor;
    if (kind <= LineKind::Metadata) {
        mSettled[{kind, isPerNumber ? number : 0}] = std::move(line.text);
    }
}

}  // namespace zoomrecorder
