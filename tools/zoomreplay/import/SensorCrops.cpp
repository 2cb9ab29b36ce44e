// Works out what part of each sensor shows an application's zoom.
#include "SensorCrops.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zoomreplay {
namespace {

using NSCam::MRect;

/// One dimension of an active array.
struct Side {
    int32_t begin;
    int32_t length;
    float degrees;

    /// Half the length, as a distance on the lens's picture plane.
    double tangent() const { return std::tan(degrees * std::numbers::pi / 360.0); }
};

Side horizontal(RigSensor const& sensor) {
    auto const& info = sensor.info;
    return {info.activeArray.x, info.activeArray.w, info.degreeH};
}

Side vertical(RigSensor const& sensor) {
    auto const& info = sensor.info;
    return {info.activeArray.y, info.activeArray.h, info.degreeV};
}

struct Interval {
    int32_t begin;
    int32_t length;
};

// From the master's side to a sensor's: both see a distance from the optical axis by its tangent.
Interval project(Interval const& region, float zoomRatio, Side const& master, Side const& sensor) {
    double const scale = sensor.length * master.tangent() /
                         (sensor.tangent() * master.length * static_cast<double>(zoomRatio));
    auto const pixel = [&](double masterPixel) {
        double const fromAxis = (masterPixel - master.length / 2.0) * scale;
        double const length = sensor.length;
        return static_cast<int32_t>(std::round(std::clamp(length / 2.0 + fromAxis, 0.0, length)));
    };
    int32_t const begin = pixel(region.begin);
    int32_t const end = pixel(static_cast<double>(region.begin) + region.length);
    return {begin + sensor.begin, end - begin};
}

}  // namespace

std::map<uint32_t, MRect> cropsOf(ZoomValues const& values, std::vector<RigSensor> const& sensors) {
    RigSensor const& master = sensors.front();
    MRect const& array = master.info.activeArray;
    MRect const region = values.cropRegion.value_or(MRect{0, 0, array.w, array.h});

    float const zoomRatio = values.zoomRatio.value_or(1.0F);
    std::map<uint32_t, MRect> crops;
    for (auto const& sensor : sensors) {
        auto const x =
            project({region.x, region.w}, zoomRatio, horizontal(master), horizontal(sensor));
        auto const y = project({region.y, region.h}, zoomRatio, vertical(master), vertical(sensor));
        if (x.length > 0 && y.length > 0) {
            crops.emplace(sensor.id, MRect{x.begin, y.begin, x.length, y.length});
        }
    }
    return crops;
}

}  // namespace zoomreplay
