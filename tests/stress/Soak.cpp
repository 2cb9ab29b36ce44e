// Requests without end, a bounded number of them in flight: memory stays flat.
//
//     soak [requests]
//
// Prints what the process holds ten times on the way; fails when it grows after the first tenth.
#include <android/log.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "IMetadata.h"
#include "IZoomOverrideMgr.h"
#include "ZoomOverrideContract.h"
#include "host/SensorTable.h"

namespace NSCam::Feature {
namespace {

constexpr uint32_t kInFlight = 8;
constexpr int64_t kPreview = streamIdOf(0, 1);
constexpr long kGrowthAllowed = 512;  // KiB: the allocator may still round up

long residentKiB() {
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    return resident * sysconf(_SC_PAGESIZE) / 1024;
}

void carry(IZoomOverrideMgr& mgr, uint32_t requestNo) {
    IMetadata metadata;
    metadata.update(kZoomRatioTag, IMetadata::IEntry(std::vector{1.5F}));
    metadata.update(kCustomStreamCropTag, IMetadata::IEntry(std::vector{7, 100, 100, 2000, 1500}));
    mgr.setRunTimeCropNeedData(requestNo, OverrideNotice::Default,
                               {{{0, 1}}, {{kPreview, {640, 480}}}, {}, {}});
    mgr.storeOverrideSetting(&metadata, {{7, static_cast<uint64_t>(kPreview)}});
    ZoomOverrideP1Need need;
    mgr.getP1CropSetting({requestNo, 2.0F, 0}, need);
    mgr.onRequestDone(requestNo - kInFlight);
}

int soak(uint32_t requests) {
    Host::setSensor(0,
                    {{1, {MSize{4000, 3000}, NSCamHW::simplifiedMatrix{1.0F, 0.0F, 1.0F, 0.0F}}}});
    auto const mgr = IZoomOverrideMgr::getInstance();
    mgr->initialize(ZoomOverrideMode::InstantRequest);
    uint32_t requestNo = kInFlight;
    long first = 0;
    long last = 0;
    for (uint32_t tenth = 1; tenth <= 10; ++tenth) {
        for (uint32_t i = 0; i < requests / 10; ++i) {
            carry(*mgr, requestNo++);
        }
        last = residentKiB();
        first = tenth == 1 ? last : first;
        std::printf("%u requests: %ld KiB\n", requestNo - kInFlight, last);
    }
    return last - first > kGrowthAllowed ? 1 : 0;
}

}  // namespace
}  // namespace NSCam::Feature

int main(int argc, char** argv) {
    // What the library logs is not what is looked at here, and would be all that is seen.
    __android_log_set_logger([](auto const*...) {});
    return NSCam::Feature::soak(static_cast<uint32_t>(argc > 1 ? std::stoul(argv[1]) : 1'000'000));
}
