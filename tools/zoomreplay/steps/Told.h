// What the library and its platform have been told up to the line in hand, and by which lines.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

#include "ISensorCropMapperFactory.h"
#include "optics/FieldOfView.h"
#include "replay/Input.h"

namespace zoomreplay {

/// Keeps what the library keeps, no longer than it does, beside the lines that brought it. A line 0
/// means that no line has brought it. Tables keep the library's own order, since it decides where
/// two streams have one port.
class Told {
 public:
    struct Deposit {
        std::shared_ptr<NSCam::Feature::RunTimeCropNeedData const> data;
        uint64_t line;  ///< that brought the data, also where later requests repeat it
    };

    /// The latest metadata.
    struct Metadata {
        float zoomRatio = 0.0F;
        bool isUsable = true;  ///< it has custom crops
        std::unordered_map<int64_t, NSCam::MRect> crops;
        uint64_t line = 0;
    };

    /// The setting that is kept.
    struct Setting {
        std::optional<NSCam::Feature::ZoomOverrideSetting> value;
        uint64_t line = 0;
        uint64_t renewedBy = 0;  ///< the latest repeating notice since; 0 for none
    };

    struct Published {
        NSCam::v3::CustomZoomRatioOverride entry;
        uint64_t line = 0;
    };

    /// The sensors' angles and arrays, as the mapper has them.
    struct Angles {
        NSCam::Feature::SensorCropMapperConfig config;
        uint64_t line = 0;
    };

    /// The port whose crop the bundle port takes.
    struct Fsp {
        NSCam::Feature::ZoomOverrideFspInfoConfig config;
        uint64_t line = 0;
    };

    /// Takes the input of a line, in the scenario's order.
    void take(uint64_t line, Input const& input);

    /// A P1 query got an answer, which the library keeps where it has a strategy.
    void answeredP1(uint32_t requestNo, uint64_t line);

    NSCam::Feature::ZoomOverrideMode mode() const { return mMode; }
    bool isP1Closed() const { return mIsP1Closed; }
    bool isP2Closed() const { return mIsP2Closed; }

    /// Null where there is none.
    Deposit const* deposit(uint32_t requestNo) const;

    /// The line of the P1 answer that is kept for a request; empty without one.
    std::optional<uint64_t> keptP1Since(uint32_t requestNo) const;

    Metadata const& metadata() const { return mMetadata; }
    Setting const& setting() const { return mSetting; }
    Published const& published() const { return mPublished; }
    Angles const& angles() const { return mAngles; }
    Fsp const& fsp() const { return mFsp; }
    bool hasPort(uint32_t sensorId, uint16_t port) const;

    /// Null where the platform has no transform for the mode.
    NSCamHW::simplifiedMatrix const* matrixOf(uint32_t sensorId, uint32_t mode) const;

    /// The output size of a mode, as the library has it: it asks the platform once for each.
    NSCam::MSize outputSize(uint32_t sensorId, uint32_t mode);

    /// What a sensor crop mapper makes of what is published. The mapper is one of its own, so that
    /// the replayed one is not disturbed.
    NSCam::Feature::SensorCropOutput mapPublished();

 private:
    void askMapper(NSCam::Feature::SensorCropOutput& output);

    void takeKind(uint64_t line, SensorInput const& input);
    void takeKind(uint64_t line, PublishInput const& input);
    void takeKind(uint64_t line, ManagerInput const& input);
    void takeKind(uint64_t line, InitializeInput const& input);
    void takeKind(uint64_t line, SensorInfoInput const& input);
    void takeKind(uint64_t line, FspInput const& input);
    void takeKind(uint64_t line, PortsInput const& input);
    void takeKind(uint64_t line, DepositInput const& input);
    void takeKind(uint64_t line, MetadataInput const& input);
    void takeKind(uint64_t line, SettingInput const& input);
    void takeKind(uint64_t line, CorrectionInput const& input);
    void takeKind(uint64_t line, DoneInput const& input);
    void takeKind(uint64_t /*line*/, QueryInput const& /*input*/) const {}
    void takeKind(uint64_t /*line*/, ObservedInput const& /*input*/) const {}

    NSCam::Feature::ZoomOverrideMode mMode = NSCam::Feature::ZoomOverrideMode::None;
    bool mIsP1Closed = false;
    bool mIsP2Closed = false;
    std::map<uint32_t, NSCam::Host::SensorModes> mSensors;
    Deposit mLatest{};
    std::unordered_map<uint32_t, Deposit> mDeposits;
    std::unordered_map<uint32_t, uint64_t> mKeptP1;  // the line of each answer
    std::map<uint32_t, std::map<uint32_t, NSCam::MSize>> mSizes;
    NSCam::Feature::ZoomOverrideSensorBehaviorInfoConfig mPorts;
    Metadata mMetadata;
    Setting mSetting;
    Published mPublished;
    Angles mAngles;
    Fsp mFsp;
    std::shared_ptr<NSCam::Feature::ISensorCropMapper> mMapper;
};

}  // namespace zoomreplay
