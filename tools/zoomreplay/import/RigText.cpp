#include "RigText.h"

#include <charconv>
#include <cmath>
#include <map>
#include <numbers>

#include "base/Messages.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay {

using namespace scenario;

namespace {

using NSCam::MRect;
using NSCam::MSize;
using SensorIds = std::map<CameraStatics const*, uint32_t>;

constexpr uint32_t kHighestSensorId = 0xFF;  // what a stream id has room for

float angleOfView(float side, float focalLength) {
    double const halfAngle = std::atan(static_cast<double>(side) / (2.0 * focalLength));
    return static_cast<float>(2.0 * halfAngle * 180.0 / std::numbers::pi);
}

/// The number that a camera id is, as one writes it; empty for other ids and what is too large.
std::optional<uint32_t> asSensorId(std::string const& id) {
    uint32_t number = 0;
    char const* const end = id.data() + id.size();
    auto const [stop, error] = std::from_chars(id.data(), end, number);
    bool const isNumber = error == std::errc{} && stop == end && std::to_string(number) == id;
    return isNumber && number <= kHighestSensorId ? std::optional(number) : std::nullopt;
}

SensorIds numberSensors(CameraStock const& stock) {
    std::set<uint32_t> taken;
    for (auto const* camera : stock.all) {
        if (auto const number = asSensorId(camera->id)) {
            taken.insert(*number);
        }
    }
    SensorIds ids;
    uint32_t lowest = 0;
    for (auto const* camera : stock.usable) {
        auto number = asSensorId(camera->id);
        if (!number.has_value()) {
            while (taken.contains(lowest)) {
                ++lowest;
            }
            taken.insert(lowest);
            number = lowest;
        }
        if (*number > kHighestSensorId) {
            throw UserError("has more cameras than a scenario has room for");
        }
        ids.emplace(camera, *number);
    }
    return ids;
}

std::string numberText(float number) {
    std::string text;
    appendJson(text, number);
    return text;
}

std::string zoomText(CameraStatics const& camera) {
    auto const& range = camera.zoomRatioRange;
    return range.has_value()
               ? ", zooms from " + numberText((*range)[0]) + " to " + numberText((*range)[1])
               : "";
}

void appendSensorComment(std::string& out, uint32_t id, CameraStatics const& camera) {
    out += "// Sensor " + std::to_string(id) + " is ";
    if (!camera.logicalId.empty()) {
        out += "physical camera " + camera.id + " of ";
    }
    out += "camera " + (camera.logicalId.empty() ? camera.id : camera.logicalId) + ": " +
           numberText(camera.focalLengths.front()) + " mm, " +
           numberText((*camera.physicalSize)[0]) + " x " + numberText((*camera.physicalSize)[1]) +
           " mm" + zoomText(camera) + ".\n";
}

void appendMode(std::string& out, char const* number, MSize const& size, MRect const& window) {
    out.append("\"").append(number).append(R"(": {"size": )");
    appendJson(out, size);
    appendField(out, "window", window);
    out += '}';
}

void appendSensor(std::string& out, uint32_t id, MRect const& array, bool isBinned) {
    out += R"({"op": "sensor", "id": )" + std::to_string(id) + R"(, "modes": {)";
    appendMode(out, "0", {array.w, array.h}, array);
    if (isBinned) {
        MSize const half{array.w / 2, array.h / 2};
        out += ", ";
        appendMode(out, "1", half, {array.x, array.y, half.w * 2, half.h * 2});
    }
    out += "}}\n";
}

void appendLogicalCamera(std::string& out, CameraStatics const& camera) {
    std::string ids;
    for (auto const& id : camera.physicalIds) {
        ids.append(ids.empty() ? "" : ", ").append(id);
    }
    out += "// Camera " + camera.id + " is logical: physical cameras " + ids + zoomText(camera) +
           ".\n";
}

void appendConfig(std::string& out, SensorGroup const& group, SensorIds const& sensorIds) {
    std::string ids;
    std::string infos;
    for (auto const* camera : group.sensors) {
        auto const id = std::to_string(sensorIds.at(camera));
        auto const [width, height] = *camera->physicalSize;
        float const focalLength = camera->focalLengths.front();
        ids.append(ids.empty() ? "" : ", ").append(id);
        infos.append(infos.empty() ? "\"" : ", \"").append(id).append(R"(": {"degreeH": )");
        appendJson(infos, angleOfView(width, focalLength));
        appendField(infos, "degreeV", angleOfView(height, focalLength));
        appendField(infos, "activeArray", *camera->activeArray);
        infos += '}';
    }
    out += R"({"op": "configSensorInfo", "sensorIds": [)" + ids + R"(], "sensorInfos": {)" + infos +
           "}}\n";
}

}  // namespace

std::string rigText(CameraStock const& stock, SensorGroup const& group, bool isBinned) {
    SensorIds const ids = numberSensors(stock);
    std::string out;
    for (auto const* camera : stock.usable) {
        appendSensorComment(out, ids.at(camera), *camera);
        appendSensor(out, ids.at(camera), *camera->activeArray, isBinned);
    }
    for (auto const* camera : stock.chosen) {
        if (!camera->physicalIds.empty()) {
            appendLogicalCamera(out, *camera);
        }
    }
    out += "// The master is sensor " + std::to_string(ids.at(group.sensors.front())) + ": " +
           group.masterReason + ".\n";
    appendConfig(out, group, ids);
    return out;
}

}  // namespace zoomreplay
