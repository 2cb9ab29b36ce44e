// Several threads on the one manager.
#include "Threads.h"

#include <benchmark/benchmark.h>

#include "Queries.h"

namespace Bench {

using NSCam::Feature::IZoomOverrideMgr;
using NSCam::Feature::OverrideNotice;
using NSCam::Feature::ZoomOverrideMode;

namespace {

constexpr int kMaxThreads = 4;

/// Each thread asks for the P2 crops of a request of its own, two sensors by request.
void p2Queries(benchmark::State& state) {
    if (state.thread_index() == 0) {
        auto const rig = makeRig(2, 8);
        auto const mgr = startManager(ZoomOverrideMode::ByRequest, rig);
        mgr->storeOverrideSetting(0, OverrideNotice::Default, rig.setting);
        depositRequests(*mgr, rig, kMaxThreads);
    }
    auto const mgr = IZoomOverrideMgr::getInstance();
    auto const request = requestOf(state.thread_index(), kBelowOverride);
    for ([[maybe_unused]] auto _ : state) {
        ZoomOverrideP2Need need;
        mgr->getP2CropSetting(request, need, false);
        benchmark::DoNotOptimize(need);
    }
    state.SetItemsProcessed(state.iterations());
}

}  // namespace

void registerThreads() {
    benchmark::RegisterBenchmark("by-request/P2/sensors:2", p2Queries)
        ->ThreadRange(1, kMaxThreads)
        ->UseRealTime();
}

}  // namespace Bench
