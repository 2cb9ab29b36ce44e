// What a stream's id says of it.
#include <gtest/gtest.h>

#include "ZoomOverrideTypes.h"

// A camera system declares its DMA ports itself, by the names that they have here.
enum { P1_PORT_R1 = 1, P1_PORT_R2, P1_PORT_R3 };
using namespace NSCam::Feature;
static_assert(P1_PORT_R1 + P1_PORT_R2 + P1_PORT_R3 == 6 && P1Port::P1_PORT_R3 == 0x7003);

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
    EXPECT_EQ(streamIdOf(0xAB, 0x7FFF, 0xDEADBEEF), 0x007FFFAB'DEADBEEF);
    EXPECT_EQ(streamIdOf(0x103, 1), 0x00000103'00000000) << "8 bits of the sensor's id";
}

}  // namespace
}  // namespace NSCam::Feature
