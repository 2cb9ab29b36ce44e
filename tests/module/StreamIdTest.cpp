// What a stream's id says of it.
#include <gtest/gtest.h>

#include "ZoomOverrideTypes.h"

namespace NSCam::Feature {
namespace {

TEST(StreamIdTest, CarriesSensorAndPort) {
    struct Case {
        uint64_t streamId;
        uint32_t sensorId;
        uint16_t portKey;
    };
    Case const cases[] = {
        {0x00700103'00000000, 0x03, 0x7001}, {0x127FFFAB'DEADBEEF, 0xAB, 0x7FFF},
        {0xFF0001FF'FFFFFFFF, 0xFF, 0x0001},  // a negative id
        {0x00800105'00000000, 0x05, 0},       // bit 55 empties the key
        {0x00FFFF05'00000000, 0x05, 0},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(sensorIdOfStream(static_cast<int64_t>(c.streamId)), c.sensorId) << c.streamId;
        EXPECT_EQ(portKeyOfStream(static_cast<int64_t>(c.streamId)), c.portKey) << c.streamId;
    }
}

}  // namespace
}  // namespace NSCam::Feature
