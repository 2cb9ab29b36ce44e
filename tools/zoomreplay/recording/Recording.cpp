#include "Recording.h"

#include <algorithm>
#include <utility>

#include "CropRecords.h"
#include "Properties.h"

namespace zoomreplay {
namespace {

using namespace NSCam;           // NOLINT(google-build-using-namespace)
using namespace NSCam::Feature;  // NOLINT(google-build-using-namespace)

constexpr int64_t kMicrosecondsPerSecond = 1000000;
constexpr int64_t kFramesPerSecond = 30;
constexpr int64_t kStep = 100;     // between two lines of one frame
constexpr int64_t kFrame = 33000;  // what the lines of a frame have to fit in

}  // namespace

Recording::Recording(RequestRange range, bool isLogged, std::vector<Writer> writers)
    : mRange(range), mIsLogged(isLogged), mWriters(std::move(writers)) {}

int64_t Recording::now() const {
    int64_t const frame = std::max<int64_t>(mFrame, 0);
    return frame * kMicrosecondsPerSecond / kFramesPerSecond + std::min(mStep * kStep, kFrame);
}

void Recording::prepare(uint64_t line, Input const& input) {
    mPending = {};
    ++mStep;
    std::visit([&](auto const& kind) { take(line, kind); }, input);
}

void Recording::take(uint64_t /*line*/, SensorInput const& input) {
    mRig.modes[static_cast<uint32_t>(input.sensorId)] = input.modes;
    mIsRigChanged = true;
}

void Recording::take(uint64_t /*line*/, PublishInput const& input) {
    mAsked.take(input.entry);
}

void Recording::take(uint64_t /*line*/, InitializeInput const& input) {
    mMode = input.mode;
    mAsked.reset();
    mByNumber.clear();
    mLatest = std::nullopt;
    mLastData = nullptr;
    if (!mIsP1Closed.has_value()) {  // the library reads its properties once
        mIsP1Closed = Utils::Properties::property_get_int32(
                          "vendor.debug.camera.zoomOverride.closeP1Override", 0) != 0;
    }
}

// The library drops its configuration when it is initialized, but the lenses stay the same.
void Recording::take(uint64_t /*line*/, SensorInfoInput const& input) {
    mAsked.take(input.config);
    mRig.infos.clear();
    for (auto const& [sensorId, info] : input.config.sensorInfos) {
        if (info != nullptr) {
            mRig.infos[sensorId] = *info;
        }
    }
    auto const& ids = input.config.sensorIds;
    mRig.master = ids.empty() ? std::nullopt : std::optional(static_cast<uint32_t>(ids.front()));
    mIsRigChanged = true;
}

void Recording::take(uint64_t line, DepositInput const& input) {
    ++mFrame;
    mStep = 0;
    auto const known = mByNumber.find(input.requestNo);
    bool const isOpen = known != mByNumber.end() && !mRequests[known->second].doneLine.has_value();
    size_t const index = isOpen ? known->second : addRequest(line, input.requestNo);
    RequestRecord& request = mRequests[index];
    request.depositLine = line;
    request.isRepeating = input.notice == OverrideNotice::Repeating;
    if (!request.isRepeating) {
        mLastData = std::make_shared<RunTimeCropNeedData const>(input.data);
    }
    request.data = mLastData;
    mLatest = index;
    mPending.request = index;
}

void Recording::take(uint64_t /*line*/, MetadataInput const& input) {
    mAsked.take(input);
    mPending.request = mLatest;
}

void Recording::take(uint64_t /*line*/, SettingInput const& /*input*/) {
    mPending.request = mLatest;
}

void Recording::take(uint64_t line, QueryInput const& input) {
    auto const known = mByNumber.find(input.request.requestNo);
    size_t const index =
        known != mByNumber.end() ? known->second : addRequest(line, input.request.requestNo);
    mPending.request = index;
    mPending.isNeedFresh = input.isNeedFresh;
    mPending.query = QueryRecord{
        input.stage, line, now(), input.request, input.isManual, QueryState::Refused, false,
        {},          {},   {}};
}

void Recording::take(uint64_t line, DoneInput const& input) {
    auto const known = mByNumber.find(input.requestNo);
    if (known == mByNumber.end()) {
        return;  // the library takes any number
    }
    mPending.request = known->second;
    RequestRecord& request = mRequests[known->second];
    request.hasP1Answer = false;
    if (!request.doneLine.has_value()) {
        request.doneLine = line;
        request.end = now();
    }
}

size_t Recording::addRequest(uint64_t line, uint32_t requestNo) {
    RequestRecord request{};
    request.requestNo = requestNo;
    request.firstLine = line;
    request.begin = now();
    request.mode = mMode;
    request.rig = currentRig();
    mRequests.push_back(std::move(request));
    mByNumber[requestNo] = mRequests.size() - 1;
    return mRequests.size() - 1;
}

size_t Recording::currentRig() {
    if (mIsRigChanged) {
        mRigs.push_back(mRig);
        mIsRigChanged = false;
    }
    return mRigs.size() - 1;
}

void Recording::consume(Outcome const& outcome) {
    auto pending = std::exchange(mPending, {});
    if (auto const* fatal = std::get_if<FatalAnswer>(&outcome.answer)) {
        mFatal = {outcome.line, outcome.op, fatal->text, now(),
                  pending.request.has_value() ? pending.request : mLatest};
        pending.request = mFatal->request;
    }
    if (!pending.request.has_value()) {
        return;
    }
    RequestRecord& request = mRequests[*pending.request];
    if (pending.query.has_value()) {
        answer(request, pending, outcome.answer);
    }
    if (isInRange(request)) {
        request.lines.push_back({outcome.line, outcome.op, outcome.log});
    }
}

void Recording::answer(RequestRecord& request, Pending& pending, Answer const& answer) {
    QueryRecord& query = *pending.query;
    auto const state = [](bool result) {
        return result ? QueryState::Overridden : QueryState::Refused;
    };
    bool const isKept = isInRange(request);
    request.rig = currentRig();
    std::visit(Overloaded{[&](P1Answer const& p1) {
                              query.state = state(p1.result);
                              query.need = p1.need;
                              bool const isCaching =
                                  mMode != ZoomOverrideMode::None && !mIsP1Closed.value_or(false);
                              query.isCached = request.hasP1Answer && isCaching;
                              request.hasP1Answer = isCaching;
                              if (p1.result && isKept) {
                                  addCrops(request, pending.isNeedFresh, query, p1.need);
                              }
                          },
                          [&](P2Answer const& p2) {
                              query.state = state(p2.result);
                              query.need = p2.need;
                              if (p2.result && isKept) {
                                  addCrops(request, pending.isNeedFresh, query, p2.need);
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

// A cached answer is the first one's, whatever has been asked for since.
void Recording::addCrops(RequestRecord const& request, bool isNeedFresh, QueryRecord& query,
                         ZoomOverrideP1Need const& need) {
    if (query.isCached) {
        auto const first =
            std::find_if(request.queries.begin(), request.queries.end(), [](auto const& earlier) {
                return earlier.stage == Stage::P1 && earlier.state == QueryState::Overridden;
            });
        if (first != request.queries.end()) {
            query.crops = first->crops;
        }
        return;
    }
    query.crops = cropRecords(
        {mRigs[request.rig], request.data.get(), mMode, isNeedFresh ? &mAsked : nullptr}, need);
}

void Recording::addCrops(RequestRecord const& request, bool isNeedFresh, QueryRecord& query,
                         ZoomOverrideP2Need const& need) {
    query.crops = cropRecords(
        {mRigs[request.rig], request.data.get(), mMode, isNeedFresh ? &mAsked : nullptr}, need);
}

void Recording::finish() {
    for (Writer const& write : mWriters) {
        write(*this);
    }
}

}  // namespace zoomreplay
