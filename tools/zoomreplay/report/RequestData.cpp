// Tells a request, its queries and its crops in the words of the page.
#include "RequestData.h"

#include <algorithm>
#include <cmath>

#include "PackedRow.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

constexpr uint8_t kAngleDecimals = 2;

char const* nameOf(QueryState state) {
    switch (state) {
        case QueryState::Overridden:
            return "overridden";
        case QueryState::Refused:
            return "refused";
        case QueryState::Exception:
            return "exception";
        case QueryState::Fatal:
            return "fatal";
    }
    return "";
}

void addRect(PackedRow& out, ActiveRect const& rect) {
    out.open('[');
    for (double const value : rect) {
        out.decimal(value, 1);
    }
    out.close(']');
}

void addAngles(PackedRow& out, double across, double down) {
    out.open('[');
    out.decimal(across, kAngleDecimals);
    out.decimal(down, kAngleDecimals);
    out.close(']');
}

void addPorts(PackedRow& out, std::vector<uint16_t> const& ports) {
    out.open('[');
    for (uint16_t const port : ports) {
        out.number(int64_t{port});
    }
    out.close(']');
}

void addView(PackedRow& out, ReplayedCrop const& crop) {
    if (crop.domain == Domain::Tg) {
        addRect(out.key("area"), crop.view->area);
    }
    if (auto const& sight = crop.view->sight) {
        addAngles(out.key("deg"), sight->across.extent(), sight->down.extent());
        addAngles(out.key("centre"), sight->across.centre, sight->down.centre);
    } else {
        constexpr uint8_t kShareDecimals = 4;
        out.key("share").decimal(crop.view->share, kShareDecimals);
    }
}

// Whole numbers stay whole, others are those of the library's single precision.
void addNumber(PackedRow& out, double value) {
    constexpr double kWhole = 1e15;
    if (std::trunc(value) == value && std::abs(value) < kWhole) {
        out.number(static_cast<int64_t>(value));
    } else {
        out.number(static_cast<float>(value));
    }
}

void addSaying(PackedRow& out, Saying const& saying) {
    out.open('[');
    out.word(saying.words);
    for (double const value : saying.numbers) {
        addNumber(out, value);
    }
    out.close(']');
}

void addStep(PackedRow& out, CropStep const& step) {
    out.open('{');
    addSaying(out.key("say"), step);
    if (step.domain == Domain::Tg) {
        out.key("tg").yes();
    }
    out.key("rect").open('[');
    for (double const value : step.rect) {
        addNumber(out, value);
    }
    out.close(']');
    out.close('}');
}

void addSteps(PackedRow& out, ReplayedCrop const& crop) {
    out.open('[');
    for (CropStep const& step : crop.steps) {
        addStep(out, step);
    }
    out.close(']');
}

void addCrop(PackedRow& out, ReplayedCrop const& crop) {
    out.open('{');
    out.key("s").number(int64_t{crop.sensorId});
    out.key("c").numbers(crop.crop);
    if (crop.kind == ReplayedCrop::Kind::Port) {
        addPorts(out.key("p"), crop.ports);
    } else if (crop.kind == ReplayedCrop::Kind::Extra) {
        out.key("extra").yes();
    }
    if (crop.domain == Domain::Tg) {
        out.key("tg").yes();
    }
    if (crop.asked.has_value()) {
        out.key("asked").numbers(*crop.asked);
    }
    if (crop.minSize.has_value()) {
        out.key("min").numbers(*crop.minSize);
    }
    if (crop.view.has_value()) {
        addView(out, crop);
    }
    if (crop.difference.has_value()) {
        addAngles(out.key("diff"), crop.difference->across, crop.difference->down);
    }
    if (!crop.steps.empty()) {
        addSteps(out.key("steps"), crop);
        if (!crop.isExplained) {
            out.key("unexplained").yes();
        }
    }
    out.close('}');
}

void addQuery(PackedRow& out, ReplayedQuery const& query) {
    out.open('{');
    out.key("stage").word(nameOf(query.stage));
    out.key("line").number(static_cast<int64_t>(query.line));
    out.key("asked").number(query.request.zoomRatio);
    out.key("sensor").number(int64_t{query.request.sensorId});
    out.key("state").word(nameOf(query.state));
    if (query.isManual) {
        out.key("manual").yes();
    }
    if (query.isCached) {
        out.key("cached").yes();
    }
    if (query.need.has_value()) {
        out.key("override").number(query.need->zoomRatio);
        out.key(query.need->overrideValid ? "valid" : "invalid").yes();
        out.key("from").number(int64_t{query.need->requestNo});
    }
    if (query.keptSince.has_value()) {
        out.key("kept").number(static_cast<int64_t>(*query.keptSince));
    }
    if (!query.reason.words.empty()) {
        addSaying(out.key("reason"), query.reason);
    }
    if (!query.trouble.empty()) {
        out.key("trouble").text(query.trouble);
    }
    out.key("crops").open('[');
    for (ReplayedCrop const& crop : query.crops) {
        addCrop(out, crop);
    }
    out.close(']');
    out.close('}');
}

void addLine(PackedRow& out, ReplayedLine const& line) {
    out.open('[');
    out.number(static_cast<int64_t>(line.line));
    out.word(line.op);
    for (auto const& log : line.log) {
        out.open('[');
        out.word(log.sink == NSCam::Host::LogSink::Print ? "print" : "unified");
        out.number(int64_t{log.level});
        out.text(log.text);
        out.close(']');
    }
    out.close(']');
}

// Most lines log nothing, and a page holds many.
bool isToldElsewhere(ReplayedRequest const& request, uint64_t line) {
    return line == request.depositLine || line == request.doneLine ||
           std::any_of(request.queries.begin(), request.queries.end(),
                       [line](ReplayedQuery const& query) { return query.line == line; });
}

void addModes(PackedRow& out, NSCam::Feature::RunTimeCropNeedData const& data) {
    out.open('{');
    for (auto const* entry : scenario::inKeyOrder(data.sensorModes)) {
        out.key(std::to_string(entry->first));
        if (entry->second == NSCam::Feature::kSensorNotStreaming) {
            out.null();
        } else {
            out.number(int64_t{entry->second});
        }
    }
    out.close('}');
}

void addObservation(PackedRow& out, Observation const& observed) {
    out.open('{');
    if (observed.zoomRatio.has_value()) {
        out.key("zoom").number(*observed.zoomRatio);
    }
    if (observed.activePhysicalId.has_value()) {
        out.key("lens").text(*observed.activePhysicalId);
    }
    if (observed.cropRegion.has_value()) {
        out.key("region").numbers(*observed.cropRegion);
    }
    out.close('}');
}

}  // namespace

PackedRow requestData(ReplayedRequest const& request) {
    PackedRow out;
    out.open('{');
    out.key("no").number(int64_t{request.requestNo});
    out.key("mode").number(static_cast<int64_t>(request.mode));
    out.key("rig").number(static_cast<int64_t>(request.rig));
    if (request.depositLine.has_value()) {
        out.key("deposit").number(static_cast<int64_t>(*request.depositLine));
    }
    if (request.doneLine.has_value()) {
        out.key("done").number(static_cast<int64_t>(*request.doneLine));
    }
    if (request.isRepeating) {
        out.key("repeating").yes();
    }
    if (request.data != nullptr) {
        addModes(out.key("modes"), *request.data);
    }
    if (request.observed.has_value()) {
        addObservation(out.key("phone"), *request.observed);
    }
    out.key("queries").open('[');
    for (ReplayedQuery const& query : request.queries) {
        addQuery(out, query);
    }
    out.close(']');
    out.key("lines").open('[');
    for (ReplayedLine const& line : request.lines) {
        if (!line.log.empty() || !isToldElsewhere(request, line.line)) {
            addLine(out, line);
        }
    }
    out.close(']');
    out.close('}');
    return out;
}

}  // namespace zoomreplay
