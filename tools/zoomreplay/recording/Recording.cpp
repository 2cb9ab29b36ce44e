// Sorts inputs and outcomes by the requests that they belong to.
#include "Recording.h"

#include <algorithm>
#include <utility>

namespace zoomreplay {
namespace {

using namespace NSCam;
using namespace NSCam::Feature;

constexpr int64_t kMicrosecondsPerSecond = 1000000;
constexpr int64_t kFramesPerSecond = 30;
constexpr int64_t kStep = 100;     // between two lines of one frame
constexpr int64_t kFrame = 33000;  // what the lines of a frame have to fit in

// A pipeline that asks late does so within this many requests after it reported one done.
constexpr size_t kDoneRequestsKept = 64;

}  // namespace

Recording::Recording(RequestRange range, Explainer const& explainer,
                     std::vector<RequestConsumer*> consumers)
    : mRange(range), mExplainer(explainer), mConsumers(std::move(consumers)) {}

int64_t Recording::now() const {
    int64_t const frame = std::max<int64_t>(mFrame, 0);
    return frame * kMicrosecondsPerSecond / kFramesPerSecond + std::min(mStep * kStep, kFrame);
}

void Recording::prepare(uint64_t line, Input const& input) {
    // The manager is created between the input of the first line that calls it and that call.
    if (!std::holds_alternative<ManagerInput>(input)) {
        mPending = {};
    }
    ++mStep;
    std::visit([&](auto const& kind) { take(line, kind); }, input);
}

void Recording::take(uint64_t /*line*/, SensorInput const& input) {
    mRig.modes[static_cast<uint32_t>(input.sensorId)] = input.modes;
    mIsRigChanged = true;
}

void Recording::take(uint64_t /*line*/, InitializeInput const& input) {
    handOnAll();
    mMode = input.modeInPlace();
    mLatest = std::nullopt;
    mLastData = nullptr;
}

void Recording::take(uint64_t /*line*/, SensorInfoInput const& input) {
    configure(mRig, input.config);
    mIsRigChanged = true;
}

void Recording::take(uint64_t line, DepositInput const& input) {
    ++mFrame;
    mStep = 0;
    auto const known = mByNumber.find(input.requestNo);
    bool const isOpen =
        known != mByNumber.end() && !mOpen.at(known->second).request.doneLine.has_value();
    Place const place = isOpen ? known->second : addRequest(line, input.requestNo);
    ReplayedRequest& request = mOpen.at(place).request;
    request.depositLine = line;
    request.isRepeating = input.notice == OverrideNotice::Repeating;
    if (!request.isRepeating) {
        mLastData = std::make_shared<RunTimeCropNeedData const>(input.data);
    }
    request.data = mLastData;
    mLatest = place;
    mPending.request = place;
}

void Recording::take(uint64_t /*line*/, MetadataInput const& /*input*/) {
    mPending.request = mLatest;
}

void Recording::take(uint64_t /*line*/, SettingInput const& /*input*/) {
    mPending.request = mLatest;
}

void Recording::take(uint64_t line, QueryInput const& input) {
    auto const known = mByNumber.find(input.request.requestNo);
    mPending.request =
        known != mByNumber.end() ? known->second : addRequest(line, input.request.requestNo);
    mPending.query = ReplayedQuery{.stage = input.stage,
                                   .line = line,
                                   .time = now(),
                                   .request = input.request,
                                   .isManual = input.isManual,
                                   .state = QueryState::Refused};
}

void Recording::take(uint64_t line, DoneInput const& input) {
    auto const known = mByNumber.find(input.requestNo);
    if (known == mByNumber.end()) {
        return;  // the library takes any number
    }
    mPending.request = known->second;
    ReplayedRequest& request = mOpen.at(known->second).request;
    if (!request.doneLine.has_value()) {
        request.doneLine = line;
        request.end = now();
        mDone.push_back(known->second);
    }
}

void Recording::take(uint64_t /*line*/, ObservedInput const& input) {
    auto const known = mByNumber.find(input.observation.requestNo);
    if (known != mByNumber.end()) {
        Open& open = mOpen.at(known->second);
        open.request.observed = input.observation;
        show(open);
    }
}

Recording::Place Recording::addRequest(uint64_t line, uint32_t requestNo) {
    bool const isInRange = mRange.contains(requestNo);
    ReplayedRequest request{};
    request.index = mInRange;
    request.requestNo = requestNo;
    request.firstLine = line;
    request.begin = now();
    request.mode = mMode;
    request.rig = currentRig();
    mInRange += isInRange ? 1 : 0;

    Place const place = mReplay.total++;
    mOpen.emplace(place, Open{std::move(request), isInRange});
    mByNumber[requestNo] = place;
    return place;
}

size_t Recording::currentRig() {
    if (mIsRigChanged) {
        mReplay.rigs.push_back(mRig);
        mIsRigChanged = false;
    }
    return mReplay.rigs.size() - 1;
}

void Recording::consume(Outcome const& outcome) {
    auto pending = std::exchange(mPending, {});
    if (auto const* fatal = std::get_if<FatalAnswer>(&outcome.answer)) {
        pending.request = pending.request.has_value() ? pending.request : mLatest;
        mReplay.fatal = {outcome.line, outcome.op, fatal->text, now(), {}};
    }
    if (!pending.request.has_value()) {
        return;
    }
    Open& open = mOpen.at(*pending.request);
    if (mReplay.fatal.has_value() && open.isInRange) {
        mReplay.fatal->request = open.request.index;
    }
    if (pending.query.has_value()) {
        answer(open, pending, outcome.answer);
    }
    if (open.isInRange) {
        open.request.lines.push_back({outcome.line, outcome.op, outcome.log});
    }
    show(open);
    handOnDone();
}

void Recording::show(Open const& open) const {
    if (!open.isInRange) {
        return;
    }
    for (RequestConsumer* consumer : mConsumers) {
        consumer->see(open.request, mReplay.rigs[open.request.rig]);
    }
}

void Recording::answer(Open& open, Pending& pending, Answer const& answer) {
    ReplayedRequest& request = open.request;
    ReplayedQuery& query = *pending.query;
    auto const state = [](bool result) {
        return result ? QueryState::Overridden : QueryState::Refused;
    };
    bool const isKept = open.isInRange;
    request.rig = currentRig();
    if (auto const& explained = mExplainer.current()) {
        query.keptSince = explained->keptSince;
        query.isCached = explained->keptSince.has_value();
        query.reason = explained->reason;
    }
    std::visit(Overloaded{[&](P1Answer const& p1) {
                              query.state = state(p1.result);
                              query.need = p1.need;
                              if (p1.result && isKept) {
                                  query.crops = p1Crops(request, query, p1.need);
                              }
                          },
                          [&](P2Answer const& p2) {
                              query.state = state(p2.result);
                              query.need = p2.need;
                              if (p2.result && isKept) {
                                  query.crops = replayedCrops(contextOf(request), p2.need);
                              }
                          },
                          [&](ThreeAAnswer const& threeA) {
                              query.state = state(threeA.result);
                              query.need = threeA.need;
                          },
                          [&](ExceptionAnswer const& exception) {
                              query.state = QueryState::Exception;
                              query.trouble = exception.type + ": " + exception.what;
                          },
                          [&](FatalAnswer const& fatal) {
                              query.state = QueryState::Fatal;
                              query.trouble = fatal.text;
                          },
                          [](auto const& /*noQuery*/) {}},
               answer);
    if (isKept) {
        request.queries.push_back(std::move(query));
    }
}

CropContext Recording::contextOf(ReplayedRequest const& request) const {
    return {mReplay.rigs[request.rig], request.data.get(), mMode, *mExplainer.current()};
}

// A cached answer is the first one's, whatever has been asked for since.
std::vector<ReplayedCrop> Recording::p1Crops(ReplayedRequest const& request,
                                             ReplayedQuery const& query,
                                             ZoomOverrideP1Need const& need) const {
    if (query.isCached) {
        auto const first = std::find_if(
            request.queries.begin(), request.queries.end(),
            [&](ReplayedQuery const& earlier) { return earlier.line == query.keptSince; });
        if (first != request.queries.end()) {
            return first->crops;
        }
    }
    return replayedCrops(contextOf(request), need);
}

void Recording::handOnDone() {
    while (mDone.size() > kDoneRequestsKept) {
        Place const place = mDone.front();
        mDone.pop_front();
        handOn(place);
    }
}

void Recording::handOn(Place place) {
    auto const found = mOpen.find(place);
    auto const& [request, isInRange] = found->second;
    if (isInRange) {
        for (RequestConsumer* consumer : mConsumers) {
            consumer->take(request, mReplay.rigs[request.rig]);
        }
    }
    if (auto const known = mByNumber.find(request.requestNo);
        known != mByNumber.end() && known->second == place) {
        mByNumber.erase(known);
    }
    if (mLatest == place) {
        mLatest = std::nullopt;
    }
    mOpen.erase(found);
}

void Recording::handOnAll() {
    while (!mOpen.empty()) {
        handOn(mOpen.begin()->first);
    }
    mDone.clear();
}

void Recording::finish() {
    handOnAll();
    mReplay.end = now();
    for (RequestConsumer* consumer : mConsumers) {
        consumer->finish(mReplay);
    }
}

}  // namespace zoomreplay
