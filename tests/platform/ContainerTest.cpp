// Named containers: how readers and writers meet, and which entries they see.
#include <android/log.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>

#include "CustomZoomRatioOverride.h"
#include "IGenericContainer.h"
#include "host/ContainerRegistry.h"
#include "host/LiblogCallback.h"

namespace {

using NSCam::v3::CustomZoomRatioOverride;
using Entry = std::shared_ptr<CustomZoomRatioOverride>;
using Container = NSCam::IGenericContainer<Entry>;

Entry makeEntry(float zoomRatio) {
    return std::make_shared<CustomZoomRatioOverride>(
        CustomZoomRatioOverride{.zoomRatio = zoomRatio, .enable = true});
}

class ContainerTest : public testing::Test {
 protected:
    ~ContainerTest() override {
        NSCam::Host::enableContainerRegistry(true);
        NSCam::Host::dropContainers();
    }
};

TEST_F(ContainerTest, NewestEntryStaysAndOldestIsDropped) {
    auto const reader = Container::createReader("zoom", 3, 0);
    auto const writer = Container::createWriter("zoom", 3, 0);
    EXPECT_EQ(reader->readNewest(), std::nullopt);

    // The first entry reads the container while it is destroyed, as a customer's code may.
    float newestWhenDropped = 0.0F;
    writer->publish(Entry(new CustomZoomRatioOverride{.zoomRatio = 1.0F}, [&](auto* entry) {
        delete entry;
        newestWhenDropped = (*reader->readNewest())->zoomRatio;
    }));
    EXPECT_EQ((*reader->readNewest())->zoomRatio, 1.0F);
    EXPECT_EQ((*reader->readNewest())->zoomRatio, 1.0F);

    writer->publish(makeEntry(2.0F));
    writer->publish(makeEntry(3.0F));
    EXPECT_EQ(newestWhenDropped, 0.0F);
    writer->publish(makeEntry(4.0F));
    EXPECT_EQ(newestWhenDropped, 4.0F);
}

TEST_F(ContainerTest, OtherKindIsToldWithBothSides) {
    static std::string told;
    __android_log_set_logger(
        [](auto const* line, auto... text) { told = NSCam::Host::textOf(line, text...); });
    auto const reader = Container::createReader("zoom", 3, 0);
    EXPECT_EQ(told, "");
    EXPECT_EQ(NSCam::IGenericContainer<int>::createWriter("zoom", 8, 1), nullptr);
    __android_log_set_logger(__android_log_stderr_logger);
    EXPECT_THAT(told,
                testing::MatchesRegex(
                    "\"zoom\" has capacity 3, flags 0x0 and elements .*CustomZoomRatioOverride"
                    ".*; this side asks for capacity 8, flags 0x1 and elements i, and gets "
                    "none"));
}

TEST_F(ContainerTest, MeetsByNameAndKind) {
    auto const entry = makeEntry(2.0F);
    Container::createWriter("zoom", 3, 0)->publish(entry);

    EXPECT_EQ(Container::createReader("zoom", 3, 0)->readNewest(), entry);
    EXPECT_EQ(Container::createReader("other", 3, 0)->readNewest(), std::nullopt);
    EXPECT_EQ(Container::createReader("zoom", 4, 0), nullptr) << "capacity";
    EXPECT_EQ(Container::createReader("zoom", 3, 1), nullptr) << "flags";
    EXPECT_EQ(NSCam::IGenericContainer<int>::createReader("zoom", 3, 0), nullptr) << "type";

    NSCam::Host::enableContainerRegistry(false);
    EXPECT_EQ(Container::createReader("zoom", 3, 0), nullptr) << "no registry";
    NSCam::Host::enableContainerRegistry(true);
    EXPECT_EQ(Container::createReader("zoom", 3, 0)->readNewest(), entry);
}

TEST_F(ContainerTest, ThreadsMeetWhoeverIsFirst) {
    for (int round = 0; round < 50; ++round) {
        NSCam::Host::dropContainers();
        auto const entry = makeEntry(2.0F);
        std::thread customer([&] { Container::createWriter("zoom", 3, 0)->publish(entry); });
        auto const reader = Container::createReader("zoom", 3, 0);
        customer.join();
        ASSERT_EQ(reader->readNewest(), entry) << round;
    }
}

TEST_F(ContainerTest, TwoThreadsPublishWhileOneReads) {
    auto const reader = Container::createReader("zoom", 3, 0);
    std::atomic<int> publishing{2};
    auto const publishUpTo = [&publishing](float last) {
        auto const writer = Container::createWriter("zoom", 3, 0);
        for (int i = 1; i <= 1000; ++i) {
            writer->publish(makeEntry(last * static_cast<float>(i) / 1000.0F));
        }
        --publishing;
    };
    std::thread plus(publishUpTo, 1000.0F);
    std::thread minus(publishUpTo, -1000.0F);

    // A reader never sees an older entry of a thread after a newer one.
    float highest = 0.0F;
    float lowest = 0.0F;
    while (publishing > 0) {
        auto const newest = reader->readNewest();
        float const ratio = newest ? (*newest)->zoomRatio : 0.0F;
        EXPECT_TRUE(ratio == 0.0F || ratio >= highest || ratio <= lowest) << ratio;
        highest = std::max(highest, ratio);
        lowest = std::min(lowest, ratio);
    }
    plus.join();
    minus.join();

    EXPECT_EQ(std::abs((*reader->readNewest())->zoomRatio), 1000.0F);
}

}  // namespace
