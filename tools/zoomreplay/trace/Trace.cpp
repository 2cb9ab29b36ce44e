// Makes the events of the requests, in the order of time.
#include "Trace.h"

#include <type_traits>
#include <utility>

#include "scenario/text/Modes.h"

namespace zoomreplay {

using namespace NSCam;
using namespace NSCam::Feature;

namespace {

constexpr Track kCalls = 1;
constexpr Track kFirstSensor = 10;

constexpr Track trackOf(Stage stage) {
    return kCalls + 1 + static_cast<Track>(stage);
}

std::string modeName(uint32_t sensorMode) {
    return "mode " + std::to_string(sensorMode);
}

}  // namespace

Trace::Trace(File& file, std::string scenario, RequestRange range, Explainer const& explainer)
    : mEvents(file),
      mCrops(mEvents),
      mScenario(std::move(scenario)),
      mRange(range),
      mExplainer(explainer) {
    mEvents.name(kCalls, "calls");
}

void Trace::begin(uint64_t line, LineTime const& time) {
    mLine = {line, mClock.next(time), {}, {}};
}

void Trace::prepare(uint64_t /*line*/, Input const& input) {
    std::visit([this](auto const& kind) { take(kind); }, input);
}

void Trace::take(SensorInput const& input) {
    mRig.modes[static_cast<uint32_t>(input.sensorId)] = input.modes;
}

void Trace::take(PublishInput const& input) {
    mPublished = startIfShown();
    if (mPublished.has_value()) {
        mEvents.slice(kCalls, "publish", mLine.time.start, mLine.time.duration,
                      lineArguments()
                          .add("zoomRatio", input.entry.zoomRatio)
                          .add("enable", input.entry.enable));
    }
}

void Trace::take(InitializeInput const& input) {
    endAllRequests();
    mMode = input.modeInPlace();
    mNewestData = nullptr;
    mSetting.reset();
}

void Trace::take(SensorInfoInput const& input) {
    configure(mRig, input.config);
}

void Trace::take(DepositInput const& input) {
    mLine.requestNo = input.requestNo;
    if (input.notice != OverrideNotice::Repeating) {
        mNewestData = std::make_shared<RunTimeCropNeedData const>(input.data);
    }
    if (!mRange.contains(input.requestNo)) {
        bool const isKnown = !mRequests.empty() && mNewestData != nullptr;
        showSensors(isKnown ? *mNewestData : RunTimeCropNeedData{});
        return;
    }
    auto const [request, isNew] =
        mRequests.try_emplace(input.requestNo, Request{mRequestCount, 0, nullptr});
    request->second.deposit = mLine.time.start;
    request->second.data = mNewestData;
    if (isNew) {
        ++mRequestCount;
        mEvents.beginRequest(request->second.id, mLine.time.start, lineArguments());
    }
    if (mNewestData != nullptr) {
        showSensors(*mNewestData);
    }
}

// Of the two forms the library takes the mode's own.
void Trace::take(MetadataInput const& /*input*/) {
    if (scenario::traitsOf(mMode).source == scenario::OverrideSource::Metadata) {
        mSetting = startIfShown();
    }
}

void Trace::take(SettingInput const& /*input*/) {
    if (scenario::traitsOf(mMode).source == scenario::OverrideSource::Setting) {
        mSetting = startIfShown();
    }
}

void Trace::take(QueryInput const& input) {
    mLine.requestNo = input.request.requestNo;
    mLine.stage = input.stage;
}

void Trace::take(DoneInput const& input) {
    mLine.requestNo = input.requestNo;
}

void Trace::take(ObservedInput const& input) {
    mLine.requestNo = input.observation.requestNo;
    if (isShown() && input.observation.zoomRatio.has_value()) {
        mEvents.counter("observed ratio", mLine.time.start, *input.observation.zoomRatio);
    }
}

bool Trace::isShown() const {
    if (mLine.requestNo.has_value()) {
        return mRange.contains(*mLine.requestNo);
    }
    return mRange.isAll() || !mRequests.empty();
}

std::optional<int64_t> Trace::startIfShown() const {
    return isShown() ? std::optional(mLine.time.start) : std::nullopt;
}

Trace::Request* Trace::findRequest() {
    auto const request =
        mLine.requestNo.has_value() ? mRequests.find(*mLine.requestNo) : mRequests.end();
    return request == mRequests.end() ? nullptr : &request->second;
}

TraceArguments Trace::lineArguments() const {
    TraceArguments arguments;
    arguments.number("line", mLine.number);
    if (mLine.requestNo.has_value()) {
        arguments.add("request", *mLine.requestNo);
    }
    return arguments;
}

void Trace::showSensors(RunTimeCropNeedData const& data) {
    for (auto const* entry : scenario::inKeyOrder(data.sensorModes)) {
        auto const next = kFirstSensor + static_cast<Track>(mSensorTracks.size());
        auto const [track, isNew] = mSensorTracks.try_emplace(entry->first, next);
        if (isNew) {
            mEvents.name(track->second, "sensor " + std::to_string(entry->first));
        }
    }
    for (auto const& [sensorId, track] : mSensorTracks) {
        auto const entry = data.sensorModes.find(sensorId);
        auto const mode = entry == data.sensorModes.end() ? kSensorNotStreaming : entry->second;
        auto const shown = mSensorModes.try_emplace(sensorId, kSensorNotStreaming).first;
        if (shown->second == mode) {
            continue;
        }
        if (shown->second != kSensorNotStreaming) {
            mEvents.endSlice(track, modeName(shown->second), mLine.time.start);
        }
        if (mode != kSensorNotStreaming) {
            mEvents.beginSlice(track, modeName(mode), mLine.time.start);
        }
        shown->second = mode;
    }
}

void Trace::endRequest(uint32_t requestNo, bool isDone) {
    auto const request = mRequests.find(requestNo);
    if (request == mRequests.end()) {
        return;
    }
    TraceArguments arguments = lineArguments();
    mEvents.endRequest(request->second.id, mLine.time.start, arguments.add("done", isDone));
    mRequests.erase(request);
}

void Trace::endAllRequests() {
    while (!mRequests.empty()) {
        endRequest(mRequests.begin()->first, false);
    }
}

void Trace::consume(Outcome const& outcome) {
    if (!isShown() && !std::holds_alternative<FatalAnswer>(outcome.answer)) {
        return;
    }
    std::visit(Overloaded{[&](P1Answer const& answer) { showQuery(outcome, answer); },
                          [&](P2Answer const& answer) { showQuery(outcome, answer); },
                          [&](ThreeAAnswer const& answer) { showQuery(outcome, answer); },
                          [&](ExceptionAnswer const&) { showTrouble(outcome); },
                          [&](FatalAnswer const&) { showTrouble(outcome); },
                          [&](BoolAnswer const& answer) {
                              showCall(outcome, lineArguments().add("result", answer.result));
                          },
                          [&](CorrectionAnswer const& answer) {
                              showCall(outcome, lineArguments().add("crop", answer.crop));
                          },
                          [&](ModeAnswer const&) { showCall(outcome, lineArguments()); },
                          [&](HistoryAnswer const&) { showCall(outcome, lineArguments()); },
                          [&](MapperAnswer const&) { showCall(outcome, lineArguments()); }},
               outcome.answer);
}

void Trace::showCall(Outcome const& outcome, TraceArguments const& arguments) {
    mEvents.slice(kCalls, outcome.op, mLine.time.start, mLine.time.duration, arguments);
    if (outcome.op == "onRequestDone") {
        endRequest(*mLine.requestNo, true);
    }
}

// The call is shown, too, on its track.
void Trace::showTrouble(Outcome const& outcome) {
    auto const* exception = std::get_if<ExceptionAnswer>(&outcome.answer);
    std::string const text = exception != nullptr ? exception->type + ": " + exception->what
                                                  : std::get<FatalAnswer>(outcome.answer).text;
    Track const track = mLine.stage.has_value() ? useTrack(*mLine.stage) : kCalls;
    TraceArguments arguments = lineArguments();
    arguments.add("text", std::string_view(text));
    mEvents.slice(track, outcome.op, mLine.time.start, mLine.time.duration, arguments);
    mEvents.instant(exception != nullptr ? "exception" : "fatal", mLine.time.start, arguments);
    if (mLine.stage.has_value()) {
        showArrows(false);
    }
}

template <typename Need>
void Trace::showQuery(Outcome const& outcome, QueryAnswer<Need> const& answer) {
    Stretch const& time = mLine.time;
    std::string const stage = nameOf(*mLine.stage);
    auto const& explained = mExplainer.current();
    bool const isCached = explained.has_value() && explained->keptSince.has_value();
    std::vector<ReplayedCrop> crops;
    if constexpr (!std::is_same_v<Need, ZoomOverride3ANeed>) {
        if (answer.result) {
            crops = replayedCrops(context(*explained), answer.need);
        }
    }

    TraceArguments arguments = lineArguments();
    arguments.add("asked", answer.request.zoomRatio)
        .add("answer", std::string_view(answer.result ? "override" : "no"))
        .add("override", answer.need.zoomRatio);
    if (isCached) {
        arguments.add("cached", true);
    }
    if (!crops.empty()) {
        arguments.json("crops", listOf(crops));
    }
    mEvents.slice(useTrack(*mLine.stage), outcome.op, time.start, time.duration, arguments);
    showArrows(answer.result && !isCached);

    mEvents.counter("asked ratio", time.start, answer.request.zoomRatio);
    mEvents.counter("override ratio", time.start, answer.need.zoomRatio);
    mCrops.show(*mLine.stage, crops, time.start);
    if (!answer.result) {
        mEvents.instant(stage + " refused", time.start, lineArguments());
    }
}

// Stages that are never asked have no track.
Track Trace::useTrack(Stage stage) {
    if (mStages.insert(stage).second) {
        mEvents.name(trackOf(stage), std::string(nameOf(stage)) + " queries");
    }
    return trackOf(stage);
}

void Trace::showArrows(bool isOverridden) {
    Track const track = trackOf(*mLine.stage);
    if (auto const* request = findRequest()) {
        mEvents.arrow(kCalls, request->deposit, track, mLine.time.start);
    }
    auto const handedOver = overrideHandedOver();
    if (isOverridden && handedOver.has_value()) {
        mEvents.arrow(kCalls, *handedOver, track, mLine.time.start);
    }
}

std::optional<int64_t> Trace::overrideHandedOver() const {
    switch (scenario::traitsOf(mMode).source) {
        case scenario::OverrideSource::Published:
            return mPublished;
        case scenario::OverrideSource::Setting:
        case scenario::OverrideSource::Metadata:
            return mSetting;
        case scenario::OverrideSource::None:
            break;
    }
    return std::nullopt;
}

CropContext Trace::context(Explained const& explained) {
    auto const* request = findRequest();
    return {mRig, request == nullptr ? nullptr : request->data.get(), mMode, explained};
}

void Trace::finish() {
    mLine = {mLine.number, {mClock.end(), 0}, {}, {}};
    endAllRequests();
    for (auto const& [sensorId, mode] : mSensorModes) {
        if (mode != kSensorNotStreaming) {
            mEvents.endSlice(mSensorTracks.at(sensorId), modeName(mode), mClock.end());
        }
    }
    mEvents.finish(
        TraceArguments()
            .add("scenario", std::string_view(mScenario))
            .add("clock", std::string_view(mClock.isReal() ? "CLOCK_BOOTTIME"
                                                           : "none: a millisecond a line")));
}

}  // namespace zoomreplay
