// The records that pass between a camera pipeline, the zoom override manager and its strategies:
// geometry, stream ids, requests, needs, per-request data, override settings and configurations.
//
// All records are plain values: copyable, owned by whoever declares them, without locks of their
// own. Two threads may read one record; a writer needs it alone. Shared ownership is used only
// where a field is a std::shared_ptr.
//
// Coordinate domains:
//   active array   the sensor's full pixel array, origin as the sensor's characteristics report it;
//   TG domain      the pixel grid that a sensor delivers in one sensor mode, origin at (0, 0).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

/// Marks a class whose symbols cross the boundary of the shared library; the rest is hidden.
#define ZOOMOVERRIDE_API __attribute__((visibility("default")))

namespace NSCam {

/// A size in pixels of the domain in which it is used.
struct MSize {
    int32_t w = 0;  ///< width
    int32_t h = 0;  ///< height

    bool operator==(MSize const&) const = default;
};

/// A rectangle of whole pixels: its top left corner and its size, in the domain in which it is
/// used.
struct MRect {
    int32_t x = 0;  ///< left edge
    int32_t y = 0;  ///< top edge
    int32_t w = 0;  ///< width
    int32_t h = 0;  ///< height

    bool operator==(MRect const&) const = default;
};

/// A rectangle with fractions of pixels, laid out like MRect.
struct MRectF {
    float x = 0.0F;  ///< left edge
    float y = 0.0F;  ///< top edge
    float w = 0.0F;  ///< width
    float h = 0.0F;  ///< height

    bool operator==(MRectF const&) const = default;
};

}  // namespace NSCam

namespace NSCam::Feature {

/// Where the override of a configuration comes from; selects the manager's strategy.
enum class ZoomOverrideMode : int32_t {
    None = 0,            ///< no strategy: every query is answered false
    ExternalAPI = 1,     ///< customer code publishes a zoom ratio for the master sensor
    ByRequest = 2,       ///< the pipeline hands over complete override settings
    InstantRequest = 3,  ///< the override arrives in the metadata of each request
};

/// Says whether a request brings data of its own. Every value other than Repeating means Default.
enum class OverrideNotice : int32_t {
    Default = 0,
    Repeating = 1,  ///< the request repeats the previous one and carries no new data
};

/// The value in RunTimeCropNeedData::sensorModes of a sensor that does not stream.
inline constexpr uint32_t kSensorNotStreaming = 0xFFFFFFFF;

/// The P1 port keys that the external-API strategy crops. In a namespace of their own, since camera
/// systems declare their DMA ports by the same names.
namespace P1Port {
/// Raw outputs of a sensor.
enum : uint16_t {
    P1_PORT_R1 = 0x7001,  ///< first raw output
    P1_PORT_R2 = 0x7002,  ///< bundle port: follows R1 or R3
    P1_PORT_R3 = 0x7003,  ///< the other raw output
};
}  // namespace P1Port

/// The id of a stream: number in bits 0 to 31, sensorId in bits 32 to 39, portKey, which must be
/// below 0x8000, in bits 40 to 55.
constexpr int64_t streamIdOf(uint32_t sensorId, uint16_t portKey, uint32_t number = 0) {
    return static_cast<int64_t>(uint64_t{portKey} << 40U | uint64_t{sensorId & 0xFFU} << 32U |
                                number);
}

/// The id of the sensor that feeds a stream: bits 32 to 39 of the stream id.
constexpr uint32_t sensorIdOfStream(int64_t streamId) {
    return static_cast<uint32_t>(static_cast<uint64_t>(streamId) >> 32U) & 0xFFU;
}

/// The P1 port key of a stream: bits 40 to 55 of the stream id, or 0 when bit 55 is set.
constexpr uint16_t portKeyOfStream(int64_t streamId) {
    auto const key = static_cast<uint16_t>(static_cast<uint64_t>(streamId) >> 40U);
    return (key & 0x8000U) != 0 ? uint16_t{0} : key;
}

/// One rectangle per P1 port key, in ascending order of the ports.
using PortCrops = std::map<uint16_t, MRect>;

/// One rectangle per sensor id.
using SensorCrops = std::unordered_map<uint32_t, MRect>;

/// Pipeline data that travels with a setting into the P2 need. The module only copies it.
using TrailingInfo = std::array<std::byte, 64>;

/// The request that a crop query is about.
struct ZoomOverrideRequest {
    uint32_t requestNo = 0;  ///< key of the crop-need history and of the P1 cache
    float zoomRatio =
        0.0F;              ///< what the application asks for; override ratios are compared with it
    int32_t sensorId = 0;  ///< the sensor that the query is about
};

/// What the answers to all crop queries begin with.
///
/// A manager without a strategy writes overrideValid (false) and mode (None) only and leaves
/// everything else as the caller gave it.
struct ZoomOverrideNeedHeader {
    bool overrideValid = false;  ///< the crops are to be applied instead of the application's zoom
    int32_t requestNo = -1;      ///< the request that the override data came from; -1 for none
    float zoomRatio = 1.0F;      ///< the ratio of the override
    ZoomOverrideMode mode = ZoomOverrideMode::None;  ///< the strategy that filled the record
};

/// Crops for the sensor/raw stage.
struct ZoomOverrideP1Need : ZoomOverrideNeedHeader {
    /// Sensor id to one crop per P1 port, TG domain of the sensor's mode in this request.
    std::unordered_map<uint32_t, PortCrops> tgCrops;
};

/// Crops for the post-processing stage. Tables are keyed by sensor id.
struct ZoomOverrideP2Need : ZoomOverrideNeedHeader {
    /// Taken over unchanged from the by-request setting.
    MRect overrideRect;

    /// The P2 crop. By request: TG domain, made from previewAaCrops. External API: active array,
    /// corrected but not converted; a crop that is there already is kept.
    SensorCrops streamCrops;

    /// The TG counterpart of extraAaCrops (by request only).
    SensorCrops extraTgCrops;

    /// The P2 crop in the active array, from the by-request setting.
    std::unordered_map<uint32_t, MRectF> previewAaCrops;

    /// A second active-array crop, from the by-request setting.
    std::unordered_map<uint32_t, MRectF> extraAaCrops;

    TrailingInfo trailingInfo{};  ///< taken over unchanged from the by-request setting
};

/// Region for auto-exposure, auto-focus and auto-white-balance. No strategy fills it: asking for it
/// while a strategy is in place stops the process.
struct ZoomOverride3ANeed : ZoomOverrideNeedHeader {};

/// What the pipeline knows of a request before its crops are asked for. Held by shared pointer;
/// repeating requests share one record.
struct RunTimeCropNeedData {
    /// Sensor id to the sensor's mode in this request, or kSensorNotStreaming.
    std::unordered_map<uint32_t, uint32_t> sensorModes;

    /// Every stream of the request with its size, in pixels of the stream.
    std::unordered_map<int64_t, MSize> streamSizes;

    /// A stream to the stream whose P1 crop it must follow; a stream that is absent follows itself.
    std::unordered_map<int64_t, int64_t> constraintStreams;

    /// The pipeline's own; the module only copies it.
    std::unordered_map<uint32_t, int32_t> extraTable;
};

/// A complete override, made by the pipeline for by-request mode and shared with the strategy that
/// keeps it. A repeating notice rewrites requestNo in place; the pipeline must not write to the
/// record while a query runs. Crop tables are keyed by sensor id, active array.
struct ZoomOverrideSetting {
    bool overrideValid = false;  ///< the override switch; false means no override
    uint32_t requestNo = 0;      ///< the request that the setting belongs to
    float zoomRatio = 0.0F;      ///< the ratio of the override
    MRect overrideRect;          ///< copied into the P2 need
    std::unordered_map<uint32_t, MRectF> previewAaCrops;  ///< the P2 crops
    std::unordered_map<uint32_t, MRectF> extraAaCrops;    ///< second crops; may lack sensors
    TrailingInfo trailingInfo{};                          ///< copied into the P2 need
};

/// Which port's crop the bundle port P1Port::P1_PORT_R2 of a sensor follows: sensor id to
/// P1Port::P1_PORT_R1 or P1Port::P1_PORT_R3.
struct ZoomOverrideFspInfoConfig {
    std::unordered_map<uint32_t, uint16_t> fspPorts;  ///< R1 for a sensor that is absent
};

/// The optics and the pixel array of one physical sensor. Made by the pipeline, shared and never
/// modified by the module.
struct ZoomOverrideSensorInfo {
    float degreeH = 0.0F;  ///< horizontal angle of view, degrees
    float degreeV = 0.0F;  ///< vertical angle of view, degrees
    MRect activeArray;     ///< in the sensor's own active-array coordinates
};

/// The sensors of a camera. Every id in sensorIds should have an entry in sensorInfos.
struct ZoomOverrideSensorInfoConfig {
    std::vector<int32_t> sensorIds;  ///< the first one is the master sensor

    /// By sensor id. Shared, not copied.
    std::unordered_map<uint32_t, std::shared_ptr<ZoomOverrideSensorInfo>> sensorInfos;
};

/// The P1 ports that each sensor has: sensor id to port to the port's size.
///
/// Ports are kept by their low byte: P1Port::P1_PORT_R1 is filed under 0x01, P1Port::P1_PORT_R3
/// under 0x03.
struct ZoomOverrideSensorBehaviorInfoConfig {
    /// Only which ports there are counts; their sizes are not read.
    std::unordered_map<uint32_t, std::map<uint8_t, MSize>> portSizes;
};

}  // namespace NSCam::Feature
