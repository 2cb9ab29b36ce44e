#include "ReportData.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "scenario/json/Json.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {
namespace {

using namespace scenario;
using namespace NSCam;           // NOLINT(google-build-using-namespace)
using namespace NSCam::Feature;  // NOLINT(google-build-using-namespace)

Json rounded(double value, double steps) {
    return static_cast<float>(std::round(value * steps) / steps);
}

Json angle(double degrees) {
    constexpr double kSteps = 1000.0;
    return rounded(degrees, kSteps);
}

// Result files write them alike.
Json number(float value) {
    if (std::isfinite(value)) {
        return value;
    }
    return std::isnan(value) ? "nan" : (value > 0.0F ? "inf" : "-inf");
}

Json sizeOf(MSize const& size) {
    return {size.w, size.h};
}

Json rectOf(MRect const& rect) {
    return {rect.x, rect.y, rect.w, rect.h};
}

Json rectOf(ActiveRect const& rect) {
    constexpr double kSteps = 10.0;
    Json json = Json::array();
    for (double const value : rect) {
        json.push_back(rounded(value, kSteps));
    }
    return json;
}

char const* nameOf(QueryState state) {
    switch (state) {
        case QueryState::Overridden:
            return "overridden";
        case QueryState::Refused:
            return "refused";
        case QueryState::Exception:
            return "exception";
        default:
            return "fatal";
    }
}

Json modesOf(Host::SensorModes const& modes) {
    Json json = Json::object();
    for (auto const& [id, mode] : modes) {
        Json entry = Json::object();
        if (mode.size.has_value()) {
            entry["size"] = sizeOf(*mode.size);
        }
        if (auto const readout = readoutOf(mode)) {
            entry["readout"] = rectOf(*readout);
        }
        json[std::to_string(id)] = std::move(entry);
    }
    return json;
}

Json sensorOf(Rig const& rig, uint32_t sensorId) {
    Json json = Json::object();
    if (auto const array = activeArrayOf(rig, sensorId)) {
        json["array"] = rectOf(*array);
        if (!hasConfiguredArray(rig, sensorId)) {
            json["unconfigured"] = true;
        }
    }
    if (auto const info = rig.infos.find(sensorId); info != rig.infos.end()) {
        json["degrees"] = {number(info->second.degreeH), number(info->second.degreeV)};
    }
    if (auto const modes = rig.modes.find(sensorId); modes != rig.modes.end()) {
        json["modes"] = modesOf(modes->second);
    }
    return json;
}

Json rigOf(Rig const& rig) {
    Json sensors = Json::object();
    for (auto const& [sensorId, modes] : rig.modes) {
        sensors[std::to_string(sensorId)] = sensorOf(rig, sensorId);
    }
    for (auto const& [sensorId, info] : rig.infos) {
        sensors[std::to_string(sensorId)] = sensorOf(rig, sensorId);
    }
    Json json{{"sensors", std::move(sensors)}};
    if (rig.master.has_value()) {
        json["master"] = *rig.master;
    }
    return json;
}

Json cropOf(CropRecord const& crop) {
    Json json{{"s", crop.sensorId}, {"c", rectOf(crop.crop)}};
    if (crop.kind == CropRecord::Kind::Port) {
        json["p"] = crop.ports;
    } else if (crop.kind == CropRecord::Kind::Extra) {
        json["extra"] = true;
    }
    if (crop.domain == Domain::Tg) {
        json["tg"] = true;
    }
    if (crop.asked.has_value()) {
        json["asked"] = rectOf(*crop.asked);
    }
    if (crop.minSize.has_value()) {
        json["min"] = sizeOf(*crop.minSize);
    }
    if (crop.view.has_value()) {
        constexpr double kSteps = 10000.0;
        json["share"] = rounded(crop.view->share, kSteps);
        if (crop.domain == Domain::Tg) {
            json["area"] = rectOf(crop.view->area);
        }
        if (auto const& sight = crop.view->sight) {
            json["deg"] = {angle(sight->across.extent()), angle(sight->down.extent())};
            json["centre"] = {angle(sight->across.centre), angle(sight->down.centre)};
        }
    }
    if (crop.difference.has_value()) {
        json["diff"] = {angle(crop.difference->across), angle(crop.difference->down)};
    }
    return json;
}

Json queryOf(QueryRecord const& query) {
    Json json{{"stage", nameOf(query.stage)},
              {"line", query.line},
              {"asked", number(query.request.zoomRatio)},
              {"sensor", query.request.sensorId},
              {"state", nameOf(query.state)}};
    if (query.isManual) {
        json["manual"] = true;
    }
    if (query.isCached) {
        json["cached"] = true;
    }
    if (query.need.has_value()) {
        json["override"] = number(query.need->zoomRatio);
        json["valid"] = query.need->overrideValid;
        json["from"] = query.need->requestNo;
    }
    if (!query.trouble.empty()) {
        json["trouble"] = query.trouble;
    }
    if (!query.crops.empty()) {
        json["crops"] = Json::array();
        for (CropRecord const& crop : query.crops) {
            json["crops"].push_back(cropOf(crop));
        }
    }
    return json;
}

Json lineOf(LineRecord const& line) {
    Json json{line.line, line.op};
    for (auto const& log : line.log) {
        json.push_back(
            {log.sink == Host::LogSink::Print ? "print" : "unified", log.level, log.text});
    }
    return json;
}

Json sensorModesOf(RunTimeCropNeedData const& data) {
    Json json = Json::object();
    for (auto const& [sensorId, mode] : data.sensorModes) {
        json[std::to_string(sensorId)] = mode == kSensorNotStreaming ? Json() : Json(mode);
    }
    return json;
}

// Most lines log nothing, and a page holds many.
bool isToldElsewhere(RequestRecord const& request, uint64_t line) {
    return line == request.depositLine || line == request.doneLine ||
           std::any_of(request.queries.begin(), request.queries.end(),
                       [line](QueryRecord const& query) { return query.line == line; });
}

Json requestOf(RequestRecord const& request) {
    Json json{{"no", request.requestNo},
              {"mode", static_cast<int32_t>(request.mode)},
              {"rig", request.rig},
              {"queries", Json::array()},
              {"lines", Json::array()}};
    if (request.depositLine.has_value()) {
        json["deposit"] = *request.depositLine;
    }
    if (request.doneLine.has_value()) {
        json["done"] = *request.doneLine;
    }
    if (request.isRepeating) {
        json["repeating"] = true;
    }
    if (request.data != nullptr) {
        json["modes"] = sensorModesOf(*request.data);
    }
    for (QueryRecord const& query : request.queries) {
        json["queries"].push_back(queryOf(query));
    }
    for (LineRecord const& line : request.lines) {
        if (!line.log.empty() || !isToldElsewhere(request, line.line)) {
            json["lines"].push_back(lineOf(line));
        }
    }
    return json;
}

// Text of the scenario ends neither the script element nor a string.
std::string inScript(Json const& json) {
    std::string const text = json.dump(-1, ' ', true, Json::error_handler_t::replace);
    std::string safe;
    safe.reserve(text.size());
    for (char const c : text) {
        if (c == '<') {
            safe += "\\u003c";
        } else {
            safe += c;
        }
    }
    return safe;
}

}  // namespace

std::string reportData(std::vector<RequestRecord> const& requests, ReplayRecord const& replay,
                       bool isLogged, std::string const& scenario) {
    Json json{{"scenario", scenario},
              {"total", replay.total},
              {"logged", isLogged},
              {"rigs", Json::array()},
              {"requests", Json::array()}};
    for (Rig const& rig : replay.rigs) {
        json["rigs"].push_back(rigOf(rig));
    }
    if (auto const& fatal = replay.fatal) {
        json["fatal"] = {{"line", fatal->line}, {"op", fatal->op}, {"text", fatal->text}};
        if (fatal->request.has_value()) {
            json["fatal"]["at"] = *fatal->request;
        }
    }
    for (RequestRecord const& request : requests) {
        json["requests"].push_back(requestOf(request));
    }
    return inScript(json);
}

}  // namespace zoomreplay
