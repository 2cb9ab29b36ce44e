// libqvxcam_stdutils: system properties.
#pragma once

#include <cstdint>

namespace NSCam::Utils {

/// The system properties of the device.
class Properties {
 public:
    /// The integer value of a system property, or fallback when it is not set. Any thread.
    static int32_t property_get_int32(char const* name, int32_t fallback);
};

}  // namespace NSCam::Utils
