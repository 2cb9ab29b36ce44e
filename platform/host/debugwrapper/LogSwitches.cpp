// Sets the switches of both sinks.
#include "host/LogSwitches.h"

#include "DebugWrapper.h"
#include "ULogger.h"

namespace NSCam::Host {

void resetLogSwitches() {
    using Utils::ULog::ULogger;
    ULogger::sMode = 11;
    ULogger::sDetailsLevel = 3;
    ULogger::sNormalDetailsMask = 0xFFFFFFFF;
    for (auto& info : g_logInfoLv) {
        info.flag = kLogLevelOn;
    }
}

void setPrintLevel(uint32_t level, bool on) {
    g_logInfoLv.at(level).flag = on ? kLogLevelOn : uint8_t{0};
}

}  // namespace NSCam::Host
