// Two threads on the one manager. Meant for ThreadSanitizer, but the answers count as well.
#include <thread>

#include "TestPlatform.h"

namespace NSCam::Feature {
namespace {

constexpr uint32_t kRequests = 1500;

class ThreadsTest : public PlatformTest {
 protected:
    /// The minimum size tells one request's history from another's: each answer is the crop grown
    /// to it, at the ratio 4:3, and centred.
    static void runRequests(uint32_t first) {
        auto const mgr = IZoomOverrideMgr::getInstance();
        auto const metadata = makeMetadata(1.0F, {10, 0, 0, 400, 300});
        for (uint32_t no = first; no < first + kRequests; ++no) {
            int32_t const step = static_cast<int32_t>(no % 100) + 1;
            MSize const minSize{400 + 8 * step, 300 + 6 * step};
            deposit(*mgr, no, {{{0, 2}}, {{kPreview, minSize}}, {}, {}});
            mgr->storeOverrideSetting(&metadata, {{10, static_cast<uint64_t>(kPreview)}});
            ZoomOverrideP1Need need;
            ASSERT_TRUE(mgr->getP1CropSetting({no, 2.0F, 0}, need));
            ASSERT_EQ(need.tgCrops[0][1],
                      (MRect{1800 - 4 * step, 1350 - 3 * step, minSize.w, minSize.h}));
            mgr->onRequestDone(no);
        }
    }
};

TEST_F(ThreadsTest, RequestsOfTwoThreads) {
    setSensor(0, {4000, 3000});
    IZoomOverrideMgr::getInstance()->initialize(ZoomOverrideMode::InstantRequest);
    std::thread other(runRequests, kRequests);
    runRequests(0);
    other.join();
}

}  // namespace
}  // namespace NSCam::Feature
