#include "TraceEvents.h"

#include <cmath>

namespace zoomreplay {
namespace {

constexpr size_t kBuffer = size_t{64} << 10U;
// Tracks are the threads of a process. Beside the trace of a phone none of them may be one of the
// phone's, whose numbers end at 4194304.
constexpr std::string_view kProcess = ", \"pid\": 100000000, \"tid\": ";
constexpr std::string_view kProcessName = "zoom override";
constexpr Track kFirstThread = 100000000;
constexpr Track kNoTrack = 1;  // for what has to name one all the same

}  // namespace

TraceEvents::TraceEvents(File& file) : mFile(file) {
    mText = "{\"traceEvents\": [";
    describe(kNoTrack, "process_name", TraceArguments().add("name", kProcessName));
}

void TraceEvents::name(Track track, std::string_view name) {
    describe(track, "thread_name", TraceArguments().add("name", name));
    describe(track, "thread_sort_index", TraceArguments().add("sort_index", track));
}

void TraceEvents::slice(Track track, std::string_view name, int64_t start, int64_t duration,
                        TraceArguments const& arguments) {
    begin("X", track, start);
    time("dur", duration);
    field("name", name);
    end(arguments);
}

void TraceEvents::beginSlice(Track track, std::string_view name, int64_t time) {
    begin("B", track, time);
    field("name", name);
    end();
}

void TraceEvents::endSlice(Track track, std::string_view name, int64_t time) {
    begin("E", track, time);
    field("name", name);
    end();
}

void TraceEvents::beginRequest(uint64_t id, int64_t time, TraceArguments const& arguments) {
    request("b", id, time, arguments);
}

void TraceEvents::endRequest(uint64_t id, int64_t time, TraceArguments const& arguments) {
    request("e", id, time, arguments);
}

void TraceEvents::request(char const* phase, uint64_t id, int64_t time,
                          TraceArguments const& arguments) {
    begin(phase, kNoTrack, time);
    field("name", "request");
    field("cat", "request");
    field("id", std::to_string(id));
    end(arguments);
}

void TraceEvents::counter(std::string_view name, int64_t time, float value) {
    if (std::isfinite(value)) {
        counter(name, time, TraceArguments().add("value", value));
    }
}

void TraceEvents::counter(std::string_view name, int64_t time, int32_t value) {
    counter(name, time, TraceArguments().add("value", value));
}

void TraceEvents::counter(std::string_view name, int64_t time, TraceArguments const& arguments) {
    std::string& held = mCounters[std::string(name)];
    if (held == arguments.text()) {
        return;
    }
    held = arguments.text();
    begin("C", kNoTrack, time);
    field("name", name);
    end(arguments);
}

void TraceEvents::instant(std::string_view name, int64_t time, TraceArguments const& arguments) {
    begin("i", kNoTrack, time);
    field("name", name);
    field("s", "g");
    end(arguments);
}

// Both ends refer to a slice by a time at which it is under way.
void TraceEvents::arrow(Track fromTrack, int64_t fromStart, Track toTrack, int64_t toStart) {
    ++mArrows;
    arrowEnd("s", fromTrack, fromStart);
    arrowEnd("f", toTrack, toStart);
}

void TraceEvents::arrowEnd(char const* phase, Track track, int64_t time) {
    begin(phase, track, time);
    field("name", "used by");
    field("cat", "use");
    field("id", std::to_string(mArrows));
    field("bp", "e");
    end();
}

void TraceEvents::finish(TraceArguments const& metadata) {
    mText += "\n],\n\"displayTimeUnit\": \"ns\",\n\"otherData\": ";
    mText += metadata.text();
    mText += "}\n";
    flush();
}

void TraceEvents::describe(Track track, std::string_view what, TraceArguments const& arguments) {
    begin("M", track, 0);
    field("name", what);
    end(arguments);
}

void TraceEvents::begin(char const* phase, Track track, int64_t time) {
    mText += mIsFirst ? "\n{\"ph\": \"" : ",\n{\"ph\": \"";
    mIsFirst = false;
    mText.append(phase).append(1, '"').append(kProcess);
    mText += std::to_string(kFirstThread + track);
    this->time("ts", time);
}

void TraceEvents::end(TraceArguments const& arguments) {
    mText.append(", \"args\": ").append(arguments.text()).append(1, '}');
    if (mText.size() > kBuffer) {
        flush();
    }
}

// Only for texts of our own, which need no escapes.
void TraceEvents::field(std::string_view name, std::string_view value) {
    mText.append(", \"").append(name).append("\": \"").append(value).append(1, '"');
}

// The format counts in microseconds; as text they do not lose the nanoseconds of a long uptime.
void TraceEvents::time(std::string_view name, int64_t nanoseconds) {
    constexpr int64_t kPerMicrosecond = 1000;
    auto const fraction = std::to_string(nanoseconds % kPerMicrosecond);
    mText.append(", \"").append(name).append("\": ");
    mText.append(std::to_string(nanoseconds / kPerMicrosecond)).append(1, '.');
    mText.append(3 - fraction.size(), '0').append(fraction);
}

void TraceEvents::flush() {
    mFile.write(mText);
    mText.clear();
}

}  // namespace zoomreplay
