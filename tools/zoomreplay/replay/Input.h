// What the lines of a scenario hand to the library and its platform, for those who follow a replay.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <variant>

#include "CustomZoomRatioOverride.h"
#include "IMetadata.h"
#include "ZoomOverrideTypes.h"
#include "host/SensorTable.h"

namespace zoomreplay {

/// The stages of a pipeline that ask for crops.
enum class Stage { P1, P2, ThreeA };

constexpr char const* nameOf(Stage stage) {
    return stage == Stage::P1 ? "P1" : (stage == Stage::P2 ? "P2" : "3A");
}

struct SensorInput {
    int32_t sensorId;
    NSCam::Host::SensorModes const& modes;
};

struct PublishInput {
    NSCam::v3::CustomZoomRatioOverride const& entry;
};

/// The manager has been created, and has read the properties that it never reads again.
struct ManagerInput {};

/// Comes after the call. Only who wants to know the mode asks the manager for it: a recorder in
/// front of the library would write the question down.
struct InitializeInput {
    std::function<NSCam::Feature::ZoomOverrideMode()> modeInPlace;
};

struct SensorInfoInput {
    NSCam::Feature::ZoomOverrideSensorInfoConfig const& config;
};

struct FspInput {
    NSCam::Feature::ZoomOverrideFspInfoConfig const& config;
};

struct PortsInput {
    NSCam::Feature::ZoomOverrideSensorBehaviorInfoConfig const& config;
};

struct DepositInput {
    uint32_t requestNo;
    NSCam::Feature::OverrideNotice notice;
    NSCam::Feature::RunTimeCropNeedData const& data;
};

struct MetadataInput {
    NSCam::IMetadata const& metadata;
    std::unordered_map<uint32_t, uint64_t> const& streamIdMap;
};

struct SettingInput {
    uint32_t requestNo;  ///< of a request to come, as a rule
    NSCam::Feature::OverrideNotice notice;
    NSCam::Feature::ZoomOverrideSetting const* setting;  ///< may be null
};

struct QueryInput {
    Stage stage;
    NSCam::Feature::ZoomOverrideRequest const& request;
    bool isManual;
    bool isNeedFresh;  ///< the caller's record holds nothing before the call

    /// The caller's record before the call; the kind that belongs to stage.
    std::variant<NSCam::Feature::ZoomOverrideP1Need const*,
                 NSCam::Feature::ZoomOverrideP2Need const*,
                 NSCam::Feature::ZoomOverride3ANeed const*>
        need;
};

/// A crop that is corrected for its own sake, outside of any query.
struct CorrectionInput {
    int32_t sensorId;
    int32_t sensorMode;
};

struct DoneInput {
    uint32_t requestNo;
};

/// What the phone itself reported for a request. The library knows nothing of it.
struct Observation {
    uint32_t requestNo = 0;
    std::optional<float> zoomRatio;
    std::optional<NSCam::MRect> cropRegion;       ///< in the active array that the phone reports
    std::optional<std::string> activePhysicalId;  ///< of the camera that the picture is from
};

struct ObservedInput {
    Observation const& observation;
};

/// Refers to what the line in hand holds: whoever wants to keep it takes a copy.
using Input = std::variant<SensorInput, PublishInput, ManagerInput, InitializeInput,
                           SensorInfoInput, FspInput, PortsInput, DepositInput, MetadataInput,
                           SettingInput, QueryInput, CorrectionInput, DoneInput, ObservedInput>;

/// The request that an input names; empty where it names none. A setting is for others to come.
inline std::optional<uint32_t> requestOf(Input const& input) {
    return std::visit(
        [](auto const& kind) -> std::optional<uint32_t> {
            if constexpr (requires { kind.request.requestNo; }) {
                return kind.request.requestNo;
            } else if constexpr (requires { kind.observation.requestNo; }) {
                return kind.observation.requestNo;
            } else if constexpr (requires { kind.requestNo; } &&
                                 !std::is_same_v<decltype(kind), SettingInput const&>) {
                return kind.requestNo;
            } else {
                return std::nullopt;
            }
        },
        input);
}

}  // namespace zoomreplay
