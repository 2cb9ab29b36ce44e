// What the platform answers is recorded when it is new, whatever of it there is.
#include "PlatformWatch.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "TestFolder.h"
#include "ZoomOverrideContract.h"
#include "host/ContainerRegistry.h"
#include "host/PropertyStore.h"
#include "host/SensorTable.h"

namespace zoomrecorder {
namespace {

using namespace NSCam::Feature;
using NSCam::Host::SensorModeInfo;
using NSCam::v3::CustomZoomRatioOverride;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

class PlatformWatchTest : public ::testing::Test {
 protected:
    ~PlatformWatchTest() override {
        NSCam::Host::clearProperties();
        NSCam::Host::enableSensorInfo(true);
        NSCam::Host::clearSensors();
        NSCam::Host::dropContainers();
    }

    /// What was recorded since the last call, without the times.
    std::string recorded() {
        std::string const text = mFolder.text();
        std::string lines;
        for (size_t end = 0; mRead < text.size(); mRead = end) {
            end = text.find('\n', mRead) + 1;
            lines += text.compare(mRead, 2, "//") == 0 ? "" : text.substr(mRead, end - mRead);
        }
        return lines;
    }

    TestFolder const mFolder{};
    PartWriter mParts{{mFolder.record, 1U << 20U}};
    PlatformWatch mWatch{mParts};
    size_t mRead = 0;
};

TEST_F(PlatformWatchTest, PropertiesThatTheManagerReads) {
    NSCam::Host::setProperty(kLogLevelProperty, 4);
    NSCam::Host::setProperty(kCloseP1Property, -1);
    mWatch.noteProperties();
    auto const line = [](char const* name, char const* value) {
        return std::string(R"({"op": "property", "name": ")") + name + R"(", "value": )" + value +
               "}\n";
    };
    EXPECT_EQ(recorded(), line(kLogLevelProperty, "4") + line(kCloseP1Property, "-1") +
                              line(kCloseP2Property, "0"));
}

TEST_F(PlatformWatchTest, ModesOfStreamingSensorsOnceEach) {
    auto const define = [](float offset) {
        SensorModeInfo const onlySize{NSCam::MSize{4, 3}, {}};
        SensorModeInfo const onlyMatrix{{}, {{1.0F, kNan, 1.0F, offset}}};
        NSCam::Host::setSensor(2, {{0, {NSCam::MSize{8, 6}, {{0.5F, -1.0F, 0.25F, 2.0F}}}},
                                   {1, onlySize},
                                   {3, onlyMatrix},
                                   {kSensorNotStreaming, onlySize}});
    };
    define(0.0F);
    for (uint32_t const mode : {3U, 0U, 3U, 1U, kSensorNotStreaming, 7U, 7U}) {
        mWatch.noteSensors({{2, mode}});
    }
    EXPECT_EQ(recorded(), R"({"op": "sensor", "id": 2, "modes": {"3": {"matrix": [1, "nan", 1, 0]}}}
{"op": "sensor", "id": 2, "modes": {"0": {"size": [8, 6], "matrix": [0.5, -1, 0.25, 2]}, "3": {"matrix": [1, "nan", 1, 0]}}}
{"op": "sensor", "id": 2, "modes": {"0": {"size": [8, 6], "matrix": [0.5, -1, 0.25, 2]}, "1": {"size": [4, 3]}, "3": {"matrix": [1, "nan", 1, 0]}}}
{"op": "sensor", "id": 2, "modes": {"0": {"size": [8, 6], "matrix": [0.5, -1, 0.25, 2]}, "1": {"size": [4, 3]}, "3": {"matrix": [1, "nan", 1, 0]}, "7": {}}}
)");

    define(-0.0F);
    mWatch.noteSensors({{2, 1}});
    mWatch.noteSensors({{2, 3}});
    NSCam::Host::enableSensorInfo(false);
    mWatch.noteSensor(-1, 0);
    EXPECT_EQ(
        recorded(),
        R"({"op": "sensor", "id": 2, "modes": {"0": {"size": [8, 6], "matrix": [0.5, -1, 0.25, 2]}, "1": {"size": [4, 3]}, "3": {"matrix": [1, "nan", 1, -0.0]}, "7": {}}}
{"op": "sensor", "id": -1, "modes": {"0": {}}}
)");
}

TEST_F(PlatformWatchTest, EntriesThatSayOtherThanTheOneBefore) {
    auto const writer =
        NSCam::IGenericContainer<std::shared_ptr<CustomZoomRatioOverride>>::createWriter(
            kCustomZoomContainer, kCustomZoomCapacity, kCustomZoomFlags);
    mWatch.noteNewestEntry();
    for (auto const& entry : std::vector<CustomZoomRatioOverride>{{0.0F, true},
                                                                  {0.0F, true},
                                                                  {0.0F, false},
                                                                  {-0.0F, false},
                                                                  {kNan, false},
                                                                  {kNan, false}}) {
        writer->publish(std::make_shared<CustomZoomRatioOverride>(entry));
        mWatch.noteNewestEntry();
        mWatch.noteNewestEntry();
    }
    writer->publish(nullptr);
    mWatch.noteNewestEntry();
    EXPECT_EQ(recorded(), R"({"op": "publish", "zoomRatio": 0, "enable": true}
{"op": "publish", "zoomRatio": 0, "enable": false}
{"op": "publish", "zoomRatio": -0.0, "enable": false}
{"op": "publish", "zoomRatio": "nan", "enable": false}
)");
}

}  // namespace
}  // namespace zoomrecorder
