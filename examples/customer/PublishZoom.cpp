// ExternalAPI mode on a workstation: a customer publishes a zoom ratio, and a camera pipeline with
// two sensors asks which crops follow from it. Real programs are one or the other.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <utility>

#include "CustomZoomRatioOverride.h"
#include "IGenericContainer.h"
#include "IZoomOverrideMgr.h"
#include "ZoomOverrideContract.h"
#include "host/SensorTable.h"

namespace {

using namespace NSCam;
using namespace NSCam::Feature;
using P1Port::P1_PORT_R1;

// ---- The customer ----

bool publishOverride(float zoomRatio, bool enable) {
    using Override = v3::CustomZoomRatioOverride;
    using Container = IGenericContainer<std::shared_ptr<Override>>;
    auto const writer =
        Container::createWriter(kCustomZoomContainer, kCustomZoomCapacity, kCustomZoomFlags);
    if (!writer) {
        return false;
    }
    writer->publish(std::make_shared<Override>(Override{.zoomRatio = zoomRatio, .enable = enable}));
    return true;
}

// ---- The pipeline: two IMX708 sensors, behind a standard and behind a wide lens ----

constexpr int32_t kMain = 0;
constexpr int32_t kWide = 1;
constexpr MRect kActiveArray{0, 0, 4608, 2592};
constexpr MSize kFullSize{4608, 2592};
constexpr MSize kBinnedSize{2304, 1296};
constexpr uint32_t kFullMode = 0;
constexpr uint32_t kBinnedMode = 1;

/// A device knows its sensors; the host platform is told.
void describeSensors() {
    Host::SensorModes const modes{
        {kFullMode, {kFullSize, Host::matrixOfWindow(kFullSize, kActiveArray)}},
        {kBinnedMode, {kBinnedSize, Host::matrixOfWindow(kBinnedSize, kActiveArray)}},
    };
    Host::setSensor(kMain, modes);
    Host::setSensor(kWide, modes);
}

std::shared_ptr<ZoomOverrideSensorInfo> sensorInfo(float degreeH, float degreeV) {
    return std::make_shared<ZoomOverrideSensorInfo>(
        ZoomOverrideSensorInfo{degreeH, degreeV, kActiveArray});
}

void configure(IZoomOverrideMgr& mgr) {
    mgr.initialize(ZoomOverrideMode::ExternalAPI);

    ZoomOverrideSensorInfoConfig sensors;
    sensors.sensorIds = {kMain, kWide};
    sensors.sensorInfos = {{kMain, sensorInfo(66.0F, 41.0F)}, {kWide, sensorInfo(102.0F, 67.0F)}};
    mgr.configSensorInfo(sensors);

    auto const r1 = static_cast<uint8_t>(P1_PORT_R1 & 0xFFU);
    mgr.configSensorBehaviorInfo({{{kMain, {{r1, kFullSize}}}, {kWide, {{r1, kFullSize}}}}});
}

void print(char const* stage, float zoomRatio, MRect const& main, MRect const& wide) {
    std::printf("  %s at %.1fx: main (%d, %d) %dx%d, wide (%d, %d) %dx%d\n", stage,
                static_cast<double>(zoomRatio), main.x, main.y, main.w, main.h, wide.x, wide.y,
                wide.w, wide.h);
}

void runRequest(IZoomOverrideMgr& mgr, ZoomOverrideRequest const& request, uint32_t sensorMode) {
    std::printf("request %u asks for %.1fx\n", request.requestNo,
                static_cast<double>(request.zoomRatio));
    RunTimeCropNeedData data;
    data.sensorModes = {{kMain, sensorMode}, {kWide, sensorMode}};
    mgr.setRunTimeCropNeedData(request.requestNo, OverrideNotice::Default, std::move(data));

    ZoomOverrideP1Need p1;
    ZoomOverrideP2Need p2;
    bool const p1Overridden = mgr.getP1CropSetting(request, p1);
    bool const p2Overridden = mgr.getP2CropSetting(request, p2, false);
    mgr.onRequestDone(request.requestNo);

    if (p1Overridden) {
        print("P1", p1.zoomRatio, p1.tgCrops.at(kMain).at(P1_PORT_R1),
              p1.tgCrops.at(kWide).at(P1_PORT_R1));
    }
    if (p2Overridden) {
        print("P2", p2.zoomRatio, p2.streamCrops.at(kMain), p2.streamCrops.at(kWide));
    }
    if (!p1Overridden && !p2Overridden) {
        std::puts("  no override");
    }
}

}  // namespace

int main() {
    describeSensors();
    auto const mgr = IZoomOverrideMgr::getInstance();
    configure(*mgr);

    runRequest(*mgr, {.requestNo = 1, .zoomRatio = 4.0F}, kBinnedMode);  // nothing published yet
    if (!publishOverride(3.0F, true)) {
        std::fputs("the container of overrides cannot be made\n", stderr);
        return 1;
    }
    runRequest(*mgr, {.requestNo = 2, .zoomRatio = 4.0F}, kBinnedMode);  // 3 is below 4: P1
    runRequest(*mgr, {.requestNo = 3, .zoomRatio = 2.0F}, kFullMode);    // 3 is above 2: P2
    publishOverride(3.0F, false);
    runRequest(*mgr, {.requestNo = 4, .zoomRatio = 4.0F}, kBinnedMode);  // switched off
}
