// A camera process whose memory is exhausted while a call is written down.
#include <android/log.h>
#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

#include "FailingMemory.h"
#include "MockManager.h"
#include "RecordingManager.h"
#include "TestFolder.h"
#include "host/LiblogCallback.h"

namespace zoomrecorder {
namespace {

/// Comes to memory again.
class ThriftyManager : public ::testing::NiceMock<NSCam::Feature::MockManager> {
 public:
    bool isPortExist(int32_t /*sensorId*/, int32_t port) override {
        isMemoryExhausted = false;
        return port == 1;
    }
};

TEST(ExhaustedMemoryTest, CallIsAnsweredAndRecordingEnds) {
    static std::array<char, 100> sReport;  // of the exhausted process
    __android_log_set_logger([](auto const* line, auto... text) {
        std::snprintf(sReport.data(), sReport.size(), "%s", NSCam::Host::textOf(line, text...));
    });
    TestFolder const folder;
    static auto const& manager = *new auto(makeRecordingManager(
        std::make_unique<CallRecorder>(Settings{folder.record, uint64_t{64} << 20U}),
        std::make_shared<ThriftyManager>()));
    isMemoryExhausted = true;
    EXPECT_TRUE(manager->isPortExist(0, 1));
    EXPECT_FALSE(manager->isPortExist(0, 2));
    __android_log_set_logger(__android_log_stderr_logger);

    EXPECT_STREQ(sReport.data(), "std::bad_alloc; recording ends, the camera goes on");
    EXPECT_EQ(folder.text().find("isPortExist"), std::string::npos) << folder.text();
}

}  // namespace
}  // namespace zoomrecorder
