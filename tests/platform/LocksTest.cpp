// The platform's tables under several threads: what one of them puts in is there, whatever the
// other does.
#include <gtest/gtest.h>

#include <atomic>
#include <ostream>
#include <string>
#include <thread>

#include "IGenericContainer.h"
#include "Properties.h"
#include "host/ContainerRegistry.h"
#include "host/PropertyStore.h"
#include "host/SensorTable.h"

namespace {

struct Table {
    char const* name;
    void (*put)(int32_t number);
    bool (*has)(int32_t number);
    void (*clear)();
};

void PrintTo(Table const& table, std::ostream* out) {
    *out << table.name;
}

std::string nameOf(int32_t number) {
    constexpr int32_t kSevenDigits = 1000000;  // in the order of the numbers
    return "vendor.debug." + std::to_string(kSevenDigits + number);
}

Table const kTables[] = {
    {"properties", [](int32_t number) { NSCam::Host::setProperty(nameOf(number), number); },
     [](int32_t number) {
         return NSCam::Utils::Properties::property_get_int32(nameOf(number).c_str(), -1) == number;
     },
     NSCam::Host::clearProperties},
    {"sensors",
     [](int32_t number) {
         NSCam::Host::setSensor(number, {{7, {NSCam::MSize{number, 1}, {}}}});
     },
     [](int32_t number) {
         auto const mode = NSCam::Host::findSensorMode(number, 7);
         return mode.has_value() && mode->size == NSCam::MSize{number, 1};
     },
     NSCam::Host::clearSensors},
    {"containers",
     [](int32_t number) {
         NSCam::IGenericContainer<int32_t>::createWriter(nameOf(number).c_str(), 3, 0)
             ->publish(number);
     },
     [](int32_t number) {
         return NSCam::IGenericContainer<int32_t>::createReader(nameOf(number).c_str(), 3, 0)
                    ->readNewest() == number;
     },
     NSCam::Host::dropContainers},
};

class LocksTest : public testing::TestWithParam<Table> {
 protected:
    ~LocksTest() override { GetParam().clear(); }
};

constexpr int32_t kEntries = 40000;

// The two meet again and again: on a busy machine one would be done before the other begins.
TEST_P(LocksTest, NothingIsLostWhileThreadsFillATable) {
    constexpr int32_t kThreads = 2;
    constexpr int32_t kBetweenMeetings = 1000;
    Table const& table = GetParam();
    std::atomic<int32_t> missing{0};
    std::atomic<int32_t> arrivals{0};
    auto const fill = [&](int32_t first) {
        for (int32_t i = first; i < kEntries; i += kThreads) {
            if (i % kBetweenMeetings == first) {
                int32_t const all = (i / kBetweenMeetings + 1) * kThreads;
                ++arrivals;
                while (arrivals < all) {  // not giving way: whoever does is late to go on
                }
            }
            table.put(i);
            missing += table.has(i) ? 0 : 1;
        }
    };
    std::thread other(fill, 1);
    fill(0);
    other.join();

    EXPECT_EQ(missing, 0);
    for (int32_t i = 0; i < kEntries; ++i) {
        ASSERT_TRUE(table.has(i)) << i;
    }
}

// Each that is put in comes next to what is read, so that a tree turns just there.
TEST_P(LocksTest, WhatIsThereIsReadWhileATableGrows) {
    Table const& table = GetParam();
    table.put(0);
    std::atomic<bool> isOver{false};
    std::thread other([&] {
        for (int32_t i = 4 * kEntries; i > 0; --i) {
            table.put(i);
        }
        isOver = true;
    });
    int32_t missing = 0;
    while (!isOver) {
        missing += table.has(0) ? 0 : 1;
    }
    other.join();

    EXPECT_EQ(missing, 0);
}
INSTANTIATE_TEST_SUITE_P(All, LocksTest, testing::ValuesIn(kTables));

}  // namespace
