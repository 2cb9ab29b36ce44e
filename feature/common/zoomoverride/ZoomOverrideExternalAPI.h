// External-API mode: customer code publishes a zoom ratio, a sensor crop mapper turns it into
// crops.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "CustomZoomRatioOverride.h"
#include "IGenericContainer.h"
#include "ISensorCropMapperFactory.h"
#include "ZoomOverrideBase.h"

namespace NSCam::Feature {

/// Applies the customer's newest entry to every request: to P1 while its ratio is below the
/// request's, to P2 otherwise.
class ZoomOverrideExternalAPI final : public ZoomOverrideBase {
 public:
    ZoomOverrideExternalAPI(std::shared_ptr<IZoomOverrideMgr> const& mgr, int32_t logLevel);

    bool configFspInfo(ZoomOverrideFspInfoConfig const& config) override;
    bool configSensorInfo(ZoomOverrideSensorInfoConfig const& config) override;
    bool getP1CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP1Need& need) override;
    bool getP2CropSetting(ZoomOverrideRequest const& request, ZoomOverrideP2Need& need,
                          bool manual) override;
    bool onRequestDone(uint32_t requestNo) override;
    ZoomOverrideMode getZoomOverrideMode() override;

 private:
    using Entry = std::shared_ptr<v3::CustomZoomRatioOverride>;
    using Container = IGenericContainer<Entry>;

    /// The customer's newest entry, empty when there is none. The process ends without a reader, in
    /// the name of operation.
    Entry newestEntry(char const* operation) const;

    /// The mapper's answer to an entry; invalid without a mapper.
    SensorCropOutput mapCrops(v3::CustomZoomRatioOverride const& entry) const;

    // Whoever asks knows the request by need alone; the two numbers are not looked at.

    /// Files the crops of need's request under the ports of each sensor, in place of what need had.
    /// @return true.
    bool updateSensorP1Crop(int32_t, int32_t, SensorCrops const& crops,
                            ZoomOverrideP1Need& need) const;

    /// Files the crops of need's request under each sensor that need has no crop for. @return true.
    bool updateSensorP2Crop(int32_t, int32_t, SensorCrops const& crops,
                            ZoomOverrideP2Need& need) const;

    /// The crops of the ports that a sensor has, and of the bundle port that follows one of them.
    PortCrops cropPorts(IZoomOverrideMgr& mgr, int32_t sensorId, int32_t sensorMode,
                        MRect const& tgCrop) const;

    /// Whether a sensor's bundle port follows R3 rather than R1.
    bool followsR3(int32_t sensorId) const;

    /// Active array to TG domain; the crop as it is where the platform has no matrix.
    bool convertToTgDomain(int32_t sensorId, int32_t sensorMode, MRect const& active,
                           MRect& tg) const;

    std::string mName = "ExternalAPI";
    std::weak_ptr<IZoomOverrideMgr> mMgr;
    std::shared_ptr<Container::Reader> mpCustomZoomReader;
    int32_t mLogLevel;
    std::unordered_map<uint32_t, uint16_t> mvFspInfo;
    std::shared_ptr<ISensorCropMapper> mpSensorCropMapper;
};

}  // namespace NSCam::Feature
