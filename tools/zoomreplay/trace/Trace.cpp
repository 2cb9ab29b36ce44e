#include "Trace.h"

#include <cmath>
#include <functional>
#include <map>
#include <utility>

#include "scenario/json/Json.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {

using namespace scenario;

namespace {

constexpr int32_t kProcess = 1;
constexpr int32_t kThread = 1;

// What counters show of crops: a viewer holds a value until the next one, so a crop that is gone
// has to be told.
using Sizes = std::map<std::string, std::pair<int32_t, int32_t>>;

class TraceEvents {
 public:
    explicit TraceEvents(File& file) : mFile(file) {}

    Json event(char const* phase, std::string const& name, int64_t time) const {
        return {{"ph", phase}, {"name", name}, {"ts", time}, {"pid", kProcess}, {"tid", kThread}};
    }

    void add(Json const& event) {
        mText += mIsFirst ? "\n" : ",\n";
        mIsFirst = false;
        mText += event.dump(-1, ' ', true, Json::error_handler_t::replace);
        if (mText.size() > kBuffer) {
            flush();
        }
    }

    void begin() { mFile.write("{\"traceEvents\": ["); }

    void end(Json const& metadata) {
        mText += "\n],\n\"displayTimeUnit\": \"ms\",\n\"otherData\": ";
        mText += metadata.dump(-1, ' ', true, Json::error_handler_t::replace);
        mText += "}\n";
        flush();
    }

 private:
    static constexpr size_t kBuffer = 1U << 16U;

    void flush() {
        mFile.write(mText);
        mText.clear();
    }

    File& mFile;
    std::string mText;
    bool mIsFirst = true;
};

void addRatios(TraceEvents& events, QueryRecord const& query) {
    Json ratios = Json::object();
    if (std::isfinite(query.request.zoomRatio)) {
        ratios["asked"] = query.request.zoomRatio;
    }
    if (query.need.has_value() && std::isfinite(query.need->zoomRatio)) {
        ratios["override"] = query.need->zoomRatio;
    }
    if (!ratios.empty()) {
        Json counter = events.event("C", std::string(nameOf(query.stage)) + " ratio", query.time);
        counter["args"] = std::move(ratios);
        events.add(counter);
    }
}

std::string counterOf(CropRecord const& crop, std::string const& which) {
    return "sensor " + std::to_string(crop.sensorId) + ' ' + which;
}

Sizes sizesOf(QueryRecord const& query) {
    Sizes sizes;
    std::string const stage = nameOf(query.stage);
    for (CropRecord const& crop : query.crops) {
        std::pair const size{crop.crop.w, crop.crop.h};
        for (uint16_t const port : crop.ports) {
            std::string which = stage + ' ';
            appendKey(which, port);
            sizes[counterOf(crop, which)] = size;
        }
        if (crop.kind == CropRecord::Kind::Stream) {
            sizes[counterOf(crop, stage + " crop")] = size;
        } else if (crop.kind == CropRecord::Kind::Extra) {
            sizes[counterOf(crop, stage + " extra")] = size;
        }
    }
    return sizes;
}

void addSizes(TraceEvents& events, QueryRecord const& query, Sizes& shown) {
    Sizes sizes = sizesOf(query);
    for (auto const& [name, size] : shown) {
        sizes.try_emplace(name, 0, 0);
    }
    for (auto const& [name, size] : sizes) {
        Json counter = events.event("C", name, query.time);
        counter["args"] = {{"width", size.first}, {"height", size.second}};
        events.add(counter);
    }
    shown = std::move(sizes);
}

void addInstant(TraceEvents& events, std::string const& name, int64_t time, char const* scope,
                Json args) {
    Json instant = events.event("i", name, time);
    instant["s"] = scope;
    instant["args"] = std::move(args);
    events.add(instant);
}

void addQuery(TraceEvents& events, QueryRecord const& query, std::map<Stage, Sizes>& shown) {
    addRatios(events, query);
    addSizes(events, query, shown[query.stage]);

    std::string const stage = nameOf(query.stage);
    Json args{{"request", query.request.requestNo}, {"line", query.line}};
    if (query.state == QueryState::Refused) {
        addInstant(events, stage + " refused", query.time, "t", std::move(args));
    } else if (query.state == QueryState::Exception) {
        args["text"] = query.trouble;
        addInstant(events, stage + " exception", query.time, "p", std::move(args));
    }
}

void addSpan(TraceEvents& events, char const* phase, RequestRecord const& request, size_t index,
             int64_t time, Json args) {
    Json span = events.event(phase, "request " + std::to_string(request.requestNo), time);
    span["cat"] = "request";
    span["id"] = index;  // numbers may come again
    span["args"] = std::move(args);
    events.add(span);
}

void addName(TraceEvents& events, char const* what, std::string const& name) {
    Json metadata = events.event("M", what, 0);
    metadata["args"] = {{"name", name}};
    events.add(metadata);
}

// In the order of time, as some viewers want it: requests overlap, so what belongs to one of them
// does not stand together.
void addRequests(TraceEvents& events, std::vector<RequestRecord> const& requests,
                 int64_t replayEnd) {
    std::multimap<int64_t, std::function<void()>> schedule;
    std::map<Stage, Sizes> shown;
    for (RequestRecord const& request : requests) {
        size_t const i = request.index;
        schedule.emplace(request.begin, [&events, &request, i] {
            addSpan(events, "b", request, i, request.begin, {{"line", request.firstLine}});
        });
        for (QueryRecord const& query : request.queries) {
            schedule.emplace(query.time,
                             [&events, &query, &shown] { addQuery(events, query, shown); });
        }
        int64_t const end = request.end.value_or(replayEnd);
        schedule.emplace(end, [&events, &request, i, end] {
            Json args{{"done", request.doneLine.has_value()}};
            if (request.doneLine.has_value()) {
                args["line"] = *request.doneLine;
            }
            addSpan(events, "e", request, i, end, std::move(args));
        });
    }
    for (auto const& [time, add] : schedule) {
        add();
    }
}

}  // namespace

void writeTrace(File& file, std::vector<RequestRecord> const& requests, ReplayRecord const& replay,
                std::string const& scenario) {
    TraceEvents events(file);
    events.begin();
    addName(events, "process_name", "zoomreplay " + scenario);
    addName(events, "thread_name", "zoom override");
    addRequests(events, requests, replay.end);
    if (auto const& fatal = replay.fatal) {
        addInstant(events, "fatal: " + std::string(fatal->op), fatal->time, "g",
                   {{"line", fatal->line}, {"text", fatal->text}});
    }
    events.end({{"scenario", scenario},
                {"time",
                 "Scenarios carry no time: requests are spaced at 30 per second, and the "
                 "lines of a request at 100 microseconds."},
                {"requestsPerSecond", 30}});
}

}  // namespace zoomreplay
