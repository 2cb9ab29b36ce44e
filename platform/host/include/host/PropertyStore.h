// Host control of libqvxcam_stdutils: the system properties of the process. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace NSCam::Host {

void setProperty(std::string const& name, int32_t value);
void clearProperties();

}  // namespace NSCam::Host
