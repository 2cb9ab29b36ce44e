// The customer of the external-API cases.
#include "CustomRatio.h"

namespace Bench {

namespace {

constexpr char kContainer[] = "qvxcam-ZoomOverrideMgr";
constexpr size_t kCapacity = 3;

}  // namespace

void publishRatio(float zoomRatio) {
    auto const entry = std::make_shared<NSCam::v3::CustomZoomRatioOverride>();
    entry->zoomRatio = zoomRatio;
    entry->enable = true;
    CustomRatio::createWriter(kContainer, kCapacity, 0)->publish(entry);
}

std::shared_ptr<CustomRatio::Reader> ratioReader() {
    return CustomRatio::createReader(kContainer, kCapacity, 0);
}

}  // namespace Bench
