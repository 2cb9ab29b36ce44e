// Notices what the platform answers, as far as the module asks it, and records it when it is new.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "CustomZoomRatioOverride.h"
#include "HwTransHelper.h"
#include "IGenericContainer.h"
#include "PartWriter.h"
#include "ZoomOverrideTypes.h"

namespace zoomrecorder {

/// One thread at a time. Each operation records before the module asks.
class PlatformWatch {
 public:
    /// @param parts outlive the watch.
    explicit PlatformWatch(PartWriter& parts) : mParts(parts) {}

    /// The properties that the manager reads when it is created.
    void noteProperties();

    /// Size and matrix of the mode of each streaming sensor.
    void noteSensors(std::unordered_map<uint32_t, uint32_t> const& sensorModes);
    void noteSensor(int32_t sensorId, uint32_t mode);

    /// The customer's newest entry, which external-API mode reads in each query.
    void noteNewestEntry();

 private:
    using Entry = NSCam::v3::CustomZoomRatioOverride;
    using Container = NSCam::IGenericContainer<std::shared_ptr<Entry>>;

    // Floats by their bits: a NaN equals itself, and the zeros differ.
    using MatrixBits = std::array<uint32_t, 4>;

    // What an entry says. The entry itself is the customer's, and is not kept longer than theirs.
    using EntryBits = std::pair<uint32_t, bool>;

    struct Mode {
        std::optional<NSCam::MSize> size;
        std::optional<MatrixBits> matrix;  // active array to TG: x scale and offset, y likewise

        bool operator==(Mode const&) const = default;
    };
    using Modes = std::map<uint32_t, Mode>;

    void recordSensor(int32_t sensorId, Modes const& modes);

    static Mode ask(int32_t sensorId, uint32_t mode);
    static void appendMode(std::string& out, Mode const& mode);

    PartWriter& mParts;
    std::unordered_map<int32_t, Modes> mSensors;
    std::shared_ptr<Container::Reader> mReader;
    std::optional<EntryBits> mNewest;
    std::string mLine;  // reused
};

}  // namespace zoomrecorder
