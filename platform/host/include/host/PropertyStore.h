// Host control of libqvxcam_stdutils: the system properties of the process. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace NSCam::Host {

/// Sets a property, new or not.
void setProperty(std::string const& name, int32_t value);

/// Unsets all properties.
void clearProperties();

}  // namespace NSCam::Host
