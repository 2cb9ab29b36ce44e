// Tells sensors, their modes and their views in the words of the page.
#include "RigData.h"

#include <cmath>
#include <utility>

namespace zoomreplay {
namespace {

using scenario::Json;

using namespace NSCam;

// Result files write numbers alike.
Json number(float value) {
    if (std::isfinite(value)) {
        return value;
    }
    return std::isnan(value) ? "nan" : (value > 0.0F ? "inf" : "-inf");
}

Json sizeOf(MSize const& size) {
    return {size.w, size.h};
}

Json rectOf(ActiveRect const& rect) {
    constexpr double kSteps = 10.0;
    Json json = Json::array();
    for (double const value : rect) {
        json.push_back(static_cast<float>(std::round(value * kSteps) / kSteps));
    }
    return json;
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

}  // namespace

scenario::Json rigData(Rig const& rig) {
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

}  // namespace zoomreplay
