// The crops that an override asks for, before the library makes them fit.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

#include "FieldOfView.h"
#include "ISensorCropMapperFactory.h"
#include "replay/Input.h"

namespace zoomreplay {

/// Follows what a scenario hands over. What is asked for is in the active array, and comes from
/// where the library takes it: custom crops from the metadata, the crops of ExternalAPI mode from a
/// sensor crop mapper. The mapper is one of the report's own, so that the replayed one is not
/// disturbed; it is made when it is first needed.
class AskedCrops {
 public:
    void take(NSCam::Feature::ZoomOverrideSensorInfoConfig const& config);
    void take(NSCam::v3::CustomZoomRatioOverride const& entry) { mEntry = entry; }
    void take(MetadataInput const& input);

    /// Forgets everything, as the library does when it is initialized. What is published stays.
    void reset();

    /// The custom crop of a stream; empty when there is none.
    std::optional<NSCam::MRect> custom(int64_t streamId) const;

    /// The mapper's crops for what is published, by sensor id.
    std::unordered_map<uint32_t, NSCam::MRect> published();

 private:
    std::map<int64_t, NSCam::MRect> mCustom;
    NSCam::v3::CustomZoomRatioOverride mEntry;
    NSCam::Feature::SensorCropMapperConfig mSensors;
    std::shared_ptr<NSCam::Feature::ISensorCropMapper> mMapper;
};

/// A crop of the active array in the pixels of a sensor's mode, rounded as the library rounds:
/// fractions are cut.
template <typename Rect>
NSCam::MRect toTg(NSCamHW::simplifiedMatrix const& matrix, Rect const& active);

}  // namespace zoomreplay
