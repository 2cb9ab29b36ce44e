// A camera process whose memory is exhausted while a call is written down.
#include <android/log.h>
#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <string>

#include "MockManager.h"
#include "RecordingManager.h"
#include "host/LiblogCallback.h"

namespace {

bool isMemoryExhausted = false;

void* allocate(std::size_t size) {
    void* const memory = isMemoryExhausted ? nullptr : std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

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
    std::string const path = ::testing::TempDir() + "memory.jsonl";
    std::filesystem::remove(path);
    static auto const& manager = *new auto(
        makeRecordingManager(std::make_unique<CallRecorder>(Settings{path, uint64_t{64} << 20U}),
                             std::make_shared<ThriftyManager>()));
    isMemoryExhausted = true;
    EXPECT_TRUE(manager->isPortExist(0, 1));
    EXPECT_FALSE(manager->isPortExist(0, 2));
    __android_log_set_logger(__android_log_stderr_logger);

    EXPECT_STREQ(sReport.data(), "std::bad_alloc; recording ends, the camera goes on");
    std::ifstream file(path);
    std::string const record{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(record.find("isPortExist"), std::string::npos) << record;
}

}  // namespace
}  // namespace zoomrecorder
