// The default sensor crop mapper: crops by the tangents of the sensors' angles of view.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "ISensorCropMapperFactory.h"

namespace NSCam::Feature {

/// What the operations do is said at ISensorCropMapper. Serialised by a lock of its own.
class SensorCropMapper : public ISensorCropMapper {
 public:
    /// Both arguments are what the factory has for every mapper; this one needs neither.
    SensorCropMapper(ISensorCropMapperFactory::CreationParams const& params, char const* name);

    bool initialize(SensorCropMapperInit const& init) override;
    bool config(SensorCropMapperConfig const& config) override;

    /// Crops every configured sensor to the field of view of the master's crop.
    ///
    /// A sensor with exactly the master's horizontal angle of view gets a crop of the master's
    /// size; any other one is scaled by the tangents of the half angles. A crop that would begin
    /// left of or above the origin becomes the whole array. Entries that out.sensorCrops has
    /// already are kept.
    /// @return false, with out.isValid false, when the master sensor is not configured.
    bool getSensorCrop(SensorCropInput const& in, SensorCropOutput& out) override;

    /// Degrees of any size and sign to radians from 0 to 2 pi.
    static float degreeToRadians(float degree);

    /// How much wider degreeA sees than degreeB: the ratio of the tangents of the half angles.
    static float degreeRatio(float degreeA, float degreeB);

 private:
    /// The wanted ratio, and whether it comes from the debug property.
    struct WantedZoom {
        float ratio;
        bool debug;
    };
    WantedZoom wantedZoom(float zoomRatio) const;

    /// The master sensor's information; null when it is not configured.
    std::shared_ptr<ZoomOverrideSensorInfo> masterInfo() const;

    /// The crop of a sensor that sees exactly as wide as the master.
    MRect cropLikeMaster(uint32_t sensorId, MRect const& array, MSize masterCrop) const;

    /// How much wider a sensor sees than the master.
    struct AngleRatios {
        float h;
        float v;
    };

    /// The crop of a sensor that sees wider or narrower than the master.
    MRect cropByAngle(uint32_t sensorId, MRect const& array, AngleRatios ratios,
                      float zoomRatio) const;

    /// A ratio of two angles that is taken anew only when one of them is another one: tangents are
    /// most of a query's work, and the pipeline, which shares the infos, may still change them.
    class KeptRatio {
     public:
        float of(float degree, float masterDegree);

     private:
        float mDegree = std::numeric_limits<float>::quiet_NaN();  // equals none
        float mMasterDegree = 0.0F;
        float mRatio = 0.0F;
    };
    struct KeptRatios {
        KeptRatio h;
        KeptRatio v;
    };

    std::mutex mLock;

 protected:
    /// From 3 on the zoom ratio can be set by a debug property.
    int32_t mLogLevel = 1;

 private:
    std::vector<int32_t> mvSensorId;  // the master first
    std::unordered_map<uint32_t, std::shared_ptr<ZoomOverrideSensorInfo>> mvInfo;
    std::string mName;
    std::unordered_map<uint32_t, KeptRatios> mRatios;  // by sensor id
};

}  // namespace NSCam::Feature
