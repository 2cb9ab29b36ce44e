// Writes cameras as the sensors and the configuration of a scenario.
#include "RigText.h"

#include <cmath>
#include <map>
#include <set>

#include "base/Messages.h"
#include "scenario/text/Line.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {

using namespace scenario;

namespace {

using NSCam::MRect;
using NSCam::MSize;
using SensorIds = std::map<CameraStatics const*, uint32_t>;

constexpr uint32_t kHighestSensorId = 0xFF;  // what a stream id has room for

/// The number that a camera id is, as one writes it; empty for other ids and what is too large.
std::optional<uint32_t> asSensorId(std::string const& id) {
    auto const number = parseNumber<uint32_t>(id);
    bool const isUsable =
        number.has_value() && *number <= kHighestSensorId && std::to_string(*number) == id;
    return isUsable ? number : std::nullopt;
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

std::string zoomText(CameraStatics const& camera) {
    std::string text;
    if (auto const& range = camera.zoomRatioRange; range.has_value()) {
        text += ", zooms from " + jsonText((*range)[0]) + " to " + jsonText((*range)[1]);
    }
    if (camera.digitalZoom.has_value()) {
        text += ", digital zoom up to " + jsonText(*camera.digitalZoom);
    }
    return text;
}

std::string positionText(CameraStatics const& camera) {
    std::string text;
    switch (camera.facing) {
        case Facing::Back:
            text = "faces back, ";
            break;
        case Facing::Front:
            text = "faces front, ";
            break;
        case Facing::External:
            text = "external, ";
            break;
        case Facing::Unknown:
            break;
    }
    if (camera.orientation.has_value()) {
        text += "turned by " + std::to_string(*camera.orientation) + " degrees, ";
    }
    return text;
}

std::string anglesText(Angles const& angles) {
    return jsonText(angles.horizontal) + " x " + jsonText(angles.vertical);
}

bool looksLike(CameraStatics const& one, CameraStatics const& other) {
    return one.activeArray == other.activeArray && one.physicalSize == other.physicalSize &&
           one.focalLengths == other.focalLengths;
}

void appendSensorComment(std::string& out, uint32_t id, CameraStatics const& camera) {
    out += "// Sensor " + std::to_string(id) + " is ";
    if (!camera.logicalId.empty()) {
        out += "physical camera " + camera.id + " of ";
    }
    out += "camera " + (camera.logicalId.empty() ? camera.id : camera.logicalId) + ": " +
           positionText(camera) + jsonText(camera.focalLengths.front()) + " mm, " +
           jsonText((*camera.physicalSize)[0]) + " x " + jsonText((*camera.physicalSize)[1]) +
           " mm" + zoomText(camera) + ".\n";
}

void appendTwins(std::string& out, CameraStatics const& camera, Cameras const& all) {
    std::string twins;
    for (auto const* other : all) {
        if (other != &camera && looksLike(*other, camera)) {
            twins.append(twins.empty() ? "" : ", ").append(other->id);
        }
    }
    if (!twins.empty()) {
        out += "// It looks the same as: " + twins + ".\n";
    }
}

// The two differ where the calibration belongs to another array, or counts the lens's distortion.
void appendAngleComment(std::string& out, CameraStatics const& camera, AngleSource source) {
    constexpr float kTolerance = 0.1F;  // degrees
    auto const bySize = anglesBySize(camera);
    auto const byIntrinsics = anglesByIntrinsics(camera);
    if (!byIntrinsics.has_value() ||
        (std::abs(bySize.horizontal - byIntrinsics->horizontal) <= kTolerance &&
         std::abs(bySize.vertical - byIntrinsics->vertical) <= kTolerance)) {
        return;
    }
    bool const isBySize = source == AngleSource::PhysicalSize;
    out += "// Its angles of view are " + anglesText(bySize) + " by its physical size" +
           (isBySize ? " (taken)" : "") + ", " + anglesText(*byIntrinsics) + " by " +
           std::string(tag::kIntrinsics) + (isBySize ? "" : " (taken)") + ".\n";
}

std::string modeText(MSize const& size, MRect const& window) {
    std::string text;
    Object(text).field("size", size).field("window", window).end();
    return text;
}

void appendSensor(std::string& out, uint32_t id, MRect const& array, bool isBinned) {
    std::string text;
    Object modes(text);
    modes.json("0", modeText({array.w, array.h}, array));
    if (isBinned) {
        MSize const half{array.w / 2, array.h / 2};
        modes.json("1", modeText(half, {array.x, array.y, half.w * 2, half.h * 2}));
    }
    modes.end();
    Line(out, "sensor").field("id", id).json("modes", text).end();
}

void appendLogicalCamera(std::string& out, CameraStatics const& camera) {
    std::string ids;
    for (auto const& id : camera.physicalIds) {
        ids.append(ids.empty() ? "" : ", ").append(id);
    }
    out += "// Camera " + camera.id + " is logical: physical cameras " + ids + zoomText(camera) +
           ".\n";
}

void appendConfig(std::string& out, SensorGroup const& group, SensorIds const& sensorIds,
                  AngleSource source) {
    std::vector<int32_t> ids;
    std::string text;
    Object infos(text);  // in the order of the ids, the master's first
    for (auto const* camera : group.sensors) {
        auto const id = sensorIds.at(camera);
        auto const angles = anglesOf(*camera, source);
        ids.push_back(static_cast<int32_t>(id));
        infos.field(std::to_string(id),
                    NSCam::Feature::ZoomOverrideSensorInfo{.degreeH = angles.horizontal,
                                                           .degreeV = angles.vertical,
                                                           .activeArray = *camera->activeArray});
    }
    infos.end();
    Line(out, "configSensorInfo").field("sensorIds", ids).json("sensorInfos", text).end();
}

void appendSession(std::string& out, OpenSession const& session, SensorGroup const& group,
                   SensorIds const& sensorIds) {
    std::vector<SensorOfCamera> sensors;
    for (auto const* camera : group.sensors) {
        sensors.push_back({sensorIds.at(camera), camera->id, 0});
    }
    auto const tables = streamTablesOf(session, sensors);
    if (tables.streamSizes.empty()) {
        return;
    }
    out += streamsComment(session);
    Line(out, "setRunTimeCropNeedData")
        .field("requestNo", 0U)
        .field("sensorModes", tables.sensorModes)
        .field("streamSizes", tables.streamSizes)
        .end();
}

}  // namespace

std::string rigText(CameraStock const& stock, SensorGroup const& group, OpenSession const* session,
                    RigOptions const& options) {
    SensorIds const ids = numberSensors(stock);
    std::string out;
    for (auto const* camera : stock.usable) {
        appendSensorComment(out, ids.at(camera), *camera);
        appendTwins(out, *camera, stock.all);
        appendAngleComment(out, *camera, options.angles);
        appendSensor(out, ids.at(camera), *camera->activeArray, options.isBinned);
    }
    for (auto const* camera : stock.chosen) {
        if (!camera->physicalIds.empty()) {
            appendLogicalCamera(out, *camera);
        }
    }
    out += "// The master is sensor " + std::to_string(ids.at(group.sensors.front())) + ": " +
           group.masterReason + ".\n";
    appendConfig(out, group, ids, options.angles);
    if (session != nullptr) {
        appendSession(out, *session, group, ids);
    }
    return out;
}

}  // namespace zoomreplay
