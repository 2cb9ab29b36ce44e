// The manager when it cannot be made, its strategy cannot, or the process ends.
#include <cstdlib>
#include <new>

#include "FailingMemory.h"
#include "TestPlatform.h"
#include "ZoomOverrideMgr.h"

namespace NSCam::Feature {
namespace {

using MemoryTest = PlatformTest;

// In a process of its own, which has no manager yet.
TEST_F(MemoryTest, ManagerThatCannotBeMadeEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const make = [] {
        allocationsBeforeFailure = 0;
        IZoomOverrideMgr::getInstance();
    };
    EXPECT_DEATH(make(), testing::HasSubstr("create ZoomOverrideMgr fail (getInstance){#"));
}

// Registered before the manager is made, so that it runs after the manager was let go, and with it
// what a pipeline has handed over.
TEST_F(MemoryTest, ManagerMayBeAskedForWhileTheProcessEnds) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    static bool isLetGo = false;
    auto const end = [] {
        std::atexit([] {
            bool const wasLetGo = isLetGo;
            auto const mgr = IZoomOverrideMgr::getInstance();
            mgr->initialize(ZoomOverrideMode::ExternalAPI);
            if (!wasLetGo || mgr->getZoomOverrideMode() != ZoomOverrideMode::ExternalAPI) {
                std::_Exit(1);
            }
        });
        auto const letGo = [](ZoomOverrideSetting* setting) {
            isLetGo = true;
            delete setting;
        };
        IZoomOverrideMgr::getInstance()->initialize(ZoomOverrideMode::ByRequest);
        IZoomOverrideMgr::getInstance()->storeOverrideSetting(1, OverrideNotice::Default,
                                                              {new ZoomOverrideSetting, letGo});
        std::exit(0);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(0), "");
}

// A customer's mapper may throw as well while it is made: wherever that happens, the manager is one
// without a strategy.
TEST_F(MemoryTest, StrategyThatCannotBeMadeLeavesNone) {
    auto const shared = IZoomOverrideMgr::getInstance();
    setSensor(0, {4000, 3000});
    Utils::ULog::ULogger::sDetailsLevel = 0;  // liblog leaks when its own allocations fail
    ZoomOverrideMgr mgr;
    int64_t failures = 0;
    for (bool isMade = false; !isMade; ++failures) {
        ASSERT_LT(failures, 1000);
        mgr.initialize(ZoomOverrideMode::InstantRequest);
        deposit(mgr, 5, {{{0, kModeNo}}, {}, {}, {}});
        try {
            allocationsBeforeFailure = failures;
            mgr.initialize(ZoomOverrideMode::ExternalAPI);
            isMade = true;
            allocationsBeforeFailure = -1;
        } catch (std::bad_alloc const&) {
            allocationsBeforeFailure = -1;
            EXPECT_EQ(mgr.getZoomOverrideMode(), ZoomOverrideMode::None);
            EXPECT_TRUE(mgr.configFspInfo({}));
            EXPECT_TRUE(mgr.configSensorInfo({}));
            EXPECT_TRUE(mgr.storeOverrideSetting(nullptr, {}));
            ZoomOverrideP1Need need;
            EXPECT_FALSE(mgr.getP1CropSetting({5, 2.0F, 0}, need));
            EXPECT_EQ(need.mode, ZoomOverrideMode::None);
        }
    }
    EXPECT_GT(failures, 2);
    EXPECT_EQ(mgr.getZoomOverrideMode(), ZoomOverrideMode::ExternalAPI);
}

}  // namespace
}  // namespace NSCam::Feature
