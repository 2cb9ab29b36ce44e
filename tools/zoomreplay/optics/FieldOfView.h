// How much of what a sensor sees a crop leaves.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>

#include "ZoomOverrideTypes.h"
#include "host/SensorTable.h"
#include "scenario/text/Modes.h"

namespace zoomreplay {

/// The sensors of a camera as a stretch of the scenario describes them, by sensor id.
struct Rig {
    std::map<uint32_t, NSCam::Host::SensorModes> modes;
    std::map<uint32_t, NSCam::Feature::ZoomOverrideSensorInfo> infos;
    std::optional<uint32_t> master;
};

/// Takes over the lenses of a configuration, and its first sensor as the master. The library drops
/// its configuration when it is initialized, but the lenses stay the same.
void configure(Rig& rig, NSCam::Feature::ZoomOverrideSensorInfoConfig const& config);

/// A rectangle of the active array with fractions of pixels: x, y, w, h.
using ActiveRect = std::array<double, 4>;

/// Whether the scenario configures a sensor's active array.
bool hasConfiguredArray(Rig const& rig, uint32_t sensorId);

/// The active array of a sensor: the configured one, or else the smallest that holds what all of
/// its modes read out. Empty where neither is known.
std::optional<ActiveRect> activeArrayOf(Rig const& rig, uint32_t sensorId);

/// The part of the active array that a mode reads out; empty without its size and matrix.
std::optional<ActiveRect> readoutOf(NSCam::Host::SensorModeInfo const& mode);

/// The mode of a sensor; null when the scenario does not define it.
NSCam::Host::SensorModeInfo const* findMode(Rig const& rig, uint32_t sensorId, uint32_t mode);

enum class Domain { ActiveArray, Tg };

/// The domain of the P2 crops of a mode; extra crops are TG crops in every mode.
constexpr Domain domainOfP2(NSCam::Feature::ZoomOverrideMode mode) {
    return scenario::traitsOf(mode).isP2InActiveArray ? Domain::ActiveArray : Domain::Tg;
}

/// What a crop sees along one axis, in degrees off the optical axis; right and down are positive.
struct Span {
    double from;    ///< the left or upper edge
    double to;      ///< the right or lower edge
    double centre;  ///< the pixel in the middle, which is not the middle of the angles

    double extent() const { return to - from; }
};

/// What a crop sees of the world.
struct Sight {
    Span across;
    Span down;
};

/// What a crop leaves of a sensor's view.
struct View {
    ActiveRect area;             ///< the crop, in the active array
    double share;                ///< its width to the active array's
    std::optional<Sight> sight;  ///< empty where no usable angles are configured
};

/// A lens draws the tangent of an angle as a distance from the centre of the active array: a pixel
/// at x is seen atan(tan(A / 2) (2 x / W - 1)) off the axis, for an array of width W and angle A.
/// @param mode the sensor's mode, which maps a TG crop back to the active array.
/// @return empty when the array or, for a TG crop, the mode's matrix is not known.
std::optional<View> viewOf(Rig const& rig, uint32_t sensorId, uint32_t mode,
                           NSCam::MRect const& crop, Domain domain);

}  // namespace zoomreplay
