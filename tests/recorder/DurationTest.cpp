// How long a query took is what the record says.
#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include "BootClock.h"
#include "MockManager.h"
#include "RecordingManager.h"
#include "TestFolder.h"

namespace zoomrecorder {
namespace {

using namespace NSCam::Feature;

constexpr std::chrono::nanoseconds kLeast = std::chrono::milliseconds(20);

class SlowManager : public ::testing::NiceMock<MockManager> {
 public:
    bool getP1CropSetting(ZoomOverrideRequest const& /*request*/,
                          ZoomOverrideP1Need& /*need*/) override {
        std::this_thread::sleep_for(kLeast);
        return true;
    }
};

TEST(DurationTest, IsThatOfTheQuery) {
    TestFolder const folder;
    static auto const& manager = *new auto(makeRecordingManager(
        std::make_unique<CallRecorder>(Settings{folder.record, uint64_t{64} << 20U}),
        std::make_shared<SlowManager>()));
    ZoomOverrideP1Need need;
    int64_t const begin = bootNanoseconds();
    manager->getP1CropSetting({}, need);
    int64_t const longest = bootNanoseconds() - begin;
    manager->isPortExist(0, 1);  // with which it is written

    std::string const record = folder.text();
    constexpr std::string_view kName = "\"dur\": ";
    auto const place = record.find(kName);
    ASSERT_NE(place, std::string::npos) << record;
    auto const duration = std::stoll(record.substr(place + kName.size()));
    EXPECT_GE(duration, kLeast.count());
    EXPECT_LE(duration, longest);
}

}  // namespace
}  // namespace zoomrecorder
