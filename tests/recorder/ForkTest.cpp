// A process that forks while its threads call the manager.
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "MockManager.h"
#include "RecordingManager.h"
#include "TestFolder.h"

namespace zoomrecorder {
namespace {

using NSCam::Feature::MockManager;
using ::testing::NiceMock;

/// Has a lock of its own, as the module.
class LockedManager : public NiceMock<MockManager> {
 public:
    bool isPortExist(int32_t /*sensorId*/, int32_t /*port*/) override {
        std::lock_guard const guard(mLock);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return true;
    }

 private:
    std::mutex mLock;
};

// Nearly always a thread is under the two locks, which the child has, but not the thread.
TEST(ForkTest, ChildNeitherWaitsNorWrites) {
    TestFolder const folder;
    static auto const& manager = *new auto(makeRecordingManager(
        std::make_unique<CallRecorder>(Settings{folder.record, uint64_t{64} << 20U}),
        std::make_shared<LockedManager>()));

    std::atomic<bool> isOver = false;
    std::thread caller([&] {
        while (!isOver) {
            manager->isPortExist(0, 1);
        }
    });
    int status = 0;
    for (int i = 0; i < 50 && status == 0; ++i) {
        pid_t const child = fork();
        if (child == 0) {
            alarm(5);  // ends a child that waits
            manager->isPortExist(7777, 1);
            _exit(0);
        }
        waitpid(child, &status, 0);
    }
    isOver = true;
    caller.join();
    manager->isPortExist(0, 2);

    EXPECT_EQ(status, 0);
    std::string const record = folder.text();
    EXPECT_EQ(record.find("\"sensorId\": 7777,"), std::string::npos);
    EXPECT_NE(record.find("\"port\": 2,"), std::string::npos);
}

}  // namespace
}  // namespace zoomrecorder
