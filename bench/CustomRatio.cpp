// The customer of the external-API cases.
#include "CustomRatio.h"

#include "ZoomOverrideContract.h"

namespace Bench {

using namespace NSCam::Feature;

void publishRatio(float zoomRatio) {
    auto const entry = std::make_shared<NSCam::v3::CustomZoomRatioOverride>();
    entry->zoomRatio = zoomRatio;
    entry->enable = true;
    CustomRatio::createWriter(kCustomZoomContainer, kCustomZoomCapacity, kCustomZoomFlags)
        ->publish(entry);
}

std::shared_ptr<CustomRatio::Reader> ratioReader() {
    return CustomRatio::createReader(kCustomZoomContainer, kCustomZoomCapacity, kCustomZoomFlags);
}

}  // namespace Bench
