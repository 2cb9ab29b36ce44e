// A process that forks while its threads call the manager.
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "MockManager.h"
#include "RecordingManager.h"
#include "TestFolder.h"

namespace zoomrecorder {
namespace {

using NSCam::Feature::MockManager;
using ::testing::NiceMock;

// Nearly always a thread is under the recorder's lock, which the child has, but not the thread.
TEST(ForkTest, ChildNeitherWaitsNorWrites) {
    TestFolder const folder;
    static auto const& manager = *new auto(makeRecordingManager(
        std::make_unique<CallRecorder>(Settings{folder.record, uint64_t{64} << 20U}),
        std::make_shared<NiceMock<MockManager>>()));

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
