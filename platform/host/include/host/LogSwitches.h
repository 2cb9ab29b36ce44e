// Host control of the switches of both log sinks. Kept by libqvxcam.debugwrapper. Any thread.
#pragma once

#include <cstdint>

namespace NSCam::Host {

/// Puts all switches back to where a process starts: sMode 11, sDetailsLevel 3, sNormalDetailsMask
/// 0xFFFFFFFF, every print level on.
void resetLogSwitches();

/// Switches one level of the debug print.
/// @throws std::out_of_range level is not below kLogLevelCount.
void setPrintLevel(uint32_t level, bool on);

}  // namespace NSCam::Host
