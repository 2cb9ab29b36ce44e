// Works out what a crop leaves of a sensor's view.
#include "FieldOfView.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zoomreplay {
namespace {

using NSCam::MRect;
using NSCam::Host::SensorModeInfo;
using NSCamHW::simplifiedMatrix;

ActiveRect asActive(MRect const& rect) {
    return {static_cast<double>(rect.x), static_cast<double>(rect.y), static_cast<double>(rect.w),
            static_cast<double>(rect.h)};
}

std::optional<ActiveRect> toActive(simplifiedMatrix const& matrix, MRect const& tg) {
    auto const [x, y, w, h] = asActive(tg);
    ActiveRect const area{(x - matrix.xOffset) / matrix.xScale,
                          (y - matrix.yOffset) / matrix.yScale, w / matrix.xScale,
                          h / matrix.yScale};
    bool const isUsable =
        std::all_of(area.begin(), area.end(), [](double v) { return std::isfinite(v); });
    return isUsable ? std::optional(area) : std::nullopt;
}

ActiveRect unionOf(ActiveRect const& a, ActiveRect const& b) {
    double const left = std::min(a[0], b[0]);
    double const top = std::min(a[1], b[1]);
    return {left, top, std::max(a[0] + a[2], b[0] + b[2]) - left,
            std::max(a[1] + a[3], b[1] + b[3]) - top};
}

bool isEmpty(ActiveRect const& rect) {
    return !(rect[2] > 0.0) || !(rect[3] > 0.0);
}

// Empty for the angles that no flat picture has.
std::optional<Span> spanOf(float fullDegrees, double offset, double length, double full) {
    constexpr double kDegreesPerRadian = 180.0 / std::numbers::pi;
    constexpr float kHalfCircle = 180.0F;
    if (!(fullDegrees > 0.0F && fullDegrees < kHalfCircle)) {
        return std::nullopt;
    }
    double const edge = std::tan(fullDegrees / kDegreesPerRadian / 2.0);
    auto const degreesAt = [&](double place) {
        return std::atan(edge * (2.0 * place / full - 1.0)) * kDegreesPerRadian;
    };
    return Span{degreesAt(offset), degreesAt(offset + length), degreesAt(offset + length / 2.0)};
}

std::optional<Sight> sightOf(NSCam::Feature::ZoomOverrideSensorInfo const& optics,
                             ActiveRect const& area, ActiveRect const& array) {
    auto const across = spanOf(optics.degreeH, area[0] - array[0], area[2], array[2]);
    auto const down = spanOf(optics.degreeV, area[1] - array[1], area[3], array[3]);
    if (!across.has_value() || !down.has_value()) {
        return std::nullopt;
    }
    return Sight{*across, *down};
}

}  // namespace

void configure(Rig& rig, NSCam::Feature::ZoomOverrideSensorInfoConfig const& config) {
    rig.infos.clear();
    for (auto const& [sensorId, info] : config.sensorInfos) {
        if (info != nullptr) {
            rig.infos[sensorId] = *info;
        }
    }
    auto const& ids = config.sensorIds;
    rig.master = ids.empty() ? std::nullopt : std::optional(static_cast<uint32_t>(ids.front()));
}

SensorModeInfo const* findMode(Rig const& rig, uint32_t sensorId, uint32_t mode) {
    auto const sensor = rig.modes.find(sensorId);
    if (sensor == rig.modes.end()) {
        return nullptr;
    }
    auto const found = sensor->second.find(mode);
    return found == sensor->second.end() ? nullptr : &found->second;
}

std::optional<ActiveRect> readoutOf(SensorModeInfo const& mode) {
    if (!mode.size.has_value() || !mode.fromActive.has_value()) {
        return std::nullopt;
    }
    return toActive(*mode.fromActive, MRect{0, 0, mode.size->w, mode.size->h});
}

bool hasConfiguredArray(Rig const& rig, uint32_t sensorId) {
    auto const info = rig.infos.find(sensorId);
    return info != rig.infos.end() && !isEmpty(asActive(info->second.activeArray));
}

std::optional<ActiveRect> activeArrayOf(Rig const& rig, uint32_t sensorId) {
    if (hasConfiguredArray(rig, sensorId)) {
        return asActive(rig.infos.at(sensorId).activeArray);
    }

    std::optional<ActiveRect> array;
    auto const sensor = rig.modes.find(sensorId);
    if (sensor != rig.modes.end()) {
        for (auto const& [number, mode] : sensor->second) {
            auto const readout = readoutOf(mode);
            if (readout.has_value() && !isEmpty(*readout)) {
                array = array.has_value() ? unionOf(*array, *readout) : *readout;
            }
        }
    }
    return array;
}

std::optional<View> viewOf(Rig const& rig, uint32_t sensorId, uint32_t mode, MRect const& crop,
                           Domain domain) {
    auto const array = activeArrayOf(rig, sensorId);
    if (!array.has_value()) {
        return std::nullopt;
    }
    std::optional<ActiveRect> area = asActive(crop);
    if (domain == Domain::Tg) {
        auto const* const info = findMode(rig, sensorId, mode);
        area = info != nullptr && info->fromActive.has_value() ? toActive(*info->fromActive, crop)
                                                               : std::nullopt;
    }
    if (!area.has_value()) {
        return std::nullopt;
    }

    View view{*area, (*area)[2] / (*array)[2], {}};
    if (auto const optics = rig.infos.find(sensorId); optics != rig.infos.end()) {
        view.sight = sightOf(optics->second, *area, *array);
    }
    return view;
}

}  // namespace zoomreplay
