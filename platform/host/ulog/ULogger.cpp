// The unified logger of a workstation.
#include "ULogger.h"

#include <string_view>

#include "host/LogCapture.h"

namespace NSCam::Utils::ULog {
namespace {

class HostLogger final : public ULogger {
 public:
    void print(uint32_t /*category*/, char const* tag, int32_t level, char const* text,
               size_t length) override {
        Host::deliverLogLine(Host::LogSink::Unified, tag, level, std::string_view(text, length));
    }

    // Nothing to do: each line has gone to liblog, which writes through, before print returned.
    void flush(int32_t /*reason*/) override {}
};

}  // namespace

// The first values are also those of resetLogSwitches.
constinit LogSwitch<uint32_t> ULogger::sMode{11};
constinit LogSwitch<int32_t> ULogger::sDetailsLevel{3};
constinit LogSwitch<uint32_t> ULogger::sNormalDetailsMask{0xFFFFFFFF};

// Never destroyed: modules log also while the process exits.
ULogger* ULogger::sULogger = new HostLogger;

}  // namespace NSCam::Utils::ULog
