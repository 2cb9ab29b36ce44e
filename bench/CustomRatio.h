// The customer of the external-API cases: publishes a zoom ratio.
#pragma once

#include <memory>

#include "CustomZoomRatioOverride.h"
#include "IGenericContainer.h"

namespace Bench {

using CustomRatio = NSCam::IGenericContainer<std::shared_ptr<NSCam::v3::CustomZoomRatioOverride>>;

/// Publishes a ratio with the override on.
void publishRatio(float zoomRatio);

/// Reads what is published, as the module does.
std::shared_ptr<CustomRatio::Reader> ratioReader();

}  // namespace Bench
