// The fixture of the module's tests: a host platform in a known state, and the records that many
// tests need.
#pragma once

#include <android/log.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "CustomZoomRatioOverride.h"
#include "HwTransHelper.h"
#include "IGenericContainer.h"
#include "IMetadata.h"
#include "IZoomOverrideMgr.h"
#include "ULogger.h"
#include "ZoomOverrideContract.h"
#include "geometry/DomainTransform.h"
#include "host/ContainerRegistry.h"
#include "host/LogCapture.h"
#include "host/LogSwitches.h"
#include "host/PropertyStore.h"
#include "host/SensorTable.h"

namespace NSCam {

inline void PrintTo(MRect const& r, std::ostream* os) {
    *os << '(' << r.x << ", " << r.y << ", " << r.w << ", " << r.h << ')';
}

}  // namespace NSCam

namespace NSCam::Feature {

inline constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
inline constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
inline constexpr float kInf = std::numeric_limits<float>::infinity();
inline constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

/// The one mode of the tests' sensors.
inline constexpr uint32_t kModeNo = 2;

using NSCamHW::simplifiedMatrix;
using TgCrops = std::unordered_map<uint32_t, PortCrops>;
using StreamIdMap = std::unordered_map<uint32_t, uint64_t>;

inline constexpr int64_t kPreview = streamIdOf(0, 1);

class PlatformTest : public testing::Test {
 protected:
    PlatformTest() {
        Host::clearSensors();
        Host::enableSensorInfo(true);
        Host::clearProperties();
        Host::enableContainerRegistry(true);
        Host::dropContainers();
        Host::resetLogSwitches();
        Host::captureLog(false);
        Host::captureLog(true);
        // Where death tests look for what ends the process; a device's own liblog writes elsewhere.
        __android_log_set_logger(__android_log_stderr_logger);
    }

    ~PlatformTest() override { Host::resetLogSwitches(); }

    /// A sensor with one mode. No matrix means that the platform knows none.
    static void setSensor(int32_t sensorId, MSize size,
                          std::optional<simplifiedMatrix> matrix = kIdentityMatrix) {
        Host::setSensor(sensorId, {{kModeNo, {size, matrix}}});
    }

    static void deposit(IZoomOverrideMgr& mgr, uint32_t requestNo, RunTimeCropNeedData data) {
        EXPECT_TRUE(
            mgr.setRunTimeCropNeedData(requestNo, OverrideNotice::Default, std::move(data)));
    }

    static IMetadata makeMetadata(float zoomRatio, std::vector<int32_t> const& crops = {}) {
        IMetadata metadata;
        metadata.update(kZoomRatioTag, IMetadata::IEntry(std::vector<float>{zoomRatio}));
        if (!crops.empty()) {
            metadata.update(kCustomStreamCropTag, IMetadata::IEntry(crops));
        }
        return metadata;
    }

    /// Publishes an entry as a customer does, on any thread.
    static void publish(float zoomRatio, bool enable) {
        using Entry = v3::CustomZoomRatioOverride;
        IGenericContainer<std::shared_ptr<Entry>>::createWriter(
            kCustomZoomContainer, kCustomZoomCapacity, kCustomZoomFlags)
            ->publish(std::make_shared<Entry>(Entry{zoomRatio, enable}));
    }

    static void expectHeader(ZoomOverrideNeedHeader const& need, bool overrideValid,
                             int32_t requestNo, float zoomRatio, ZoomOverrideMode mode) {
        EXPECT_EQ(need.overrideValid, overrideValid);
        EXPECT_EQ(need.requestNo, requestNo);
        EXPECT_THAT(need.zoomRatio, testing::NanSensitiveFloatEq(zoomRatio));
        EXPECT_EQ(need.mode, mode);
    }

    /// What the unified logger received since the last call.
    static std::vector<std::string> takeLog() {
        std::vector<std::string> texts;
        for (auto& line : Host::takeCapturedLog()) {
            if (line.sink == Host::LogSink::Unified) {
                texts.push_back(std::move(line.text));
            }
        }
        return texts;
    }
};

}  // namespace NSCam::Feature
