// The binary interface: the order of the virtual operations and the layout of stream ids.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "ISensorCropMapperFactory.h"
#include "IZoomOverrideMgr.h"

namespace NSCam::Feature {
namespace {

/// The place of a virtual operation in the table of its class. In the Itanium C++ ABI a pointer to
/// it begins with the offset into the table; x86-64 sets bit 0 to mark it as virtual, AArch64 marks
/// it elsewhere. The destructor takes places 0 and 1.
template <typename Operation>
size_t slotOf(Operation operation) {
    size_t offset = 0;
    std::memcpy(&offset, &operation, sizeof offset);
    return (offset & ~size_t{1}) / sizeof(void*);
}

TEST(InterfaceTest, ManagerOperationsInOrder) {
    using Mgr = IZoomOverrideMgr;
    using FromMetadata =
        bool (Mgr::*)(IMetadata const*, std::unordered_map<uint32_t, uint64_t> const&);
    using ByNotice = bool (Mgr::*)(uint32_t, OverrideNotice, std::shared_ptr<ZoomOverrideSetting>);
    size_t const slots[] = {
        slotOf(&Mgr::configFspInfo),
        slotOf(&Mgr::configSensorInfo),
        slotOf(&Mgr::getP1CropSetting),
        slotOf(&Mgr::getP2CropSetting),
        slotOf(&Mgr::get3ACropSetting),
        slotOf(static_cast<FromMetadata>(&Mgr::storeOverrideSetting)),
        slotOf(static_cast<ByNotice>(&Mgr::storeOverrideSetting)),
        slotOf(&Mgr::onRequestDone),
        slotOf(&Mgr::getZoomOverrideMode),
        slotOf(&Mgr::initialize),
        slotOf(&Mgr::configSensorBehaviorInfo),
        slotOf(&Mgr::setRunTimeCropNeedData),
        slotOf(&Mgr::getHistoryCropNeedData),
        slotOf(&Mgr::isPortExist),
        slotOf(&Mgr::correctTgCropRegion),
    };
    EXPECT_THAT(slots, testing::ElementsAre(2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
}

TEST(InterfaceTest, MapperOperationsInOrder) {
    EXPECT_EQ(slotOf(&ISensorCropMapper::initialize), 2U);
    EXPECT_EQ(slotOf(&ISensorCropMapper::config), 3U);
    EXPECT_EQ(slotOf(&ISensorCropMapper::getSensorCrop), 4U);
}

TEST(InterfaceTest, StreamIdsCarrySensorAndPort) {
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
