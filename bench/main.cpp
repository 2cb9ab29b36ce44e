// Times each case and its floor in one run, in turns, and counts their heap allocations.
//
// The time of a benchmark is that of one call of the module. Its counters: floor_ns, the time of
// the same answer by the floor; ratio, the median over the batches of module to floor, which other
// load on the machine disturbs less than the times; allocs and floor_allocs, per call.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>

#include "Case.h"
#include "HeapCount.h"
#include "Threads.h"

namespace {

using Bench::Case;
using Bench::Work;

double median(std::vector<double>& values) {
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double secondsOf(Work& work, void (Work::*batch)()) {
    auto const start = std::chrono::steady_clock::now();
    (work.*batch)();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double allocationsOf(Work& work, void (Work::*batch)(), int calls) {
    auto const before = Bench::heapAllocations();
    (work.*batch)();
    return static_cast<double>(Bench::heapAllocations() - before) / calls;
}

void run(benchmark::State& state, Case const& measured) {
    auto const work = measured.start();

    // The first batch fills caches; the second one counts.
    work->prepare();
    work->module();
    work->floor();
    work->finish();
    work->prepare();
    double const moduleAllocs = allocationsOf(*work, &Work::module, measured.calls);
    double const floorAllocs = allocationsOf(*work, &Work::floor, measured.calls);
    bool const agree = work->agree();
    work->finish();
    if (!agree) {
        state.SkipWithError("the floor gives another answer");
        return;
    }

    std::vector<double> moduleTimes;
    std::vector<double> floorTimes;
    std::vector<double> ratios;
    bool moduleFirst = false;
    for ([[maybe_unused]] auto _ : state) {
        work->prepare();
        double moduleTime = 0.0;
        double floorTime = 0.0;
        if (moduleFirst) {
            moduleTime = secondsOf(*work, &Work::module);
            floorTime = secondsOf(*work, &Work::floor);
        } else {
            floorTime = secondsOf(*work, &Work::floor);
            moduleTime = secondsOf(*work, &Work::module);
        }
        moduleFirst = !moduleFirst;
        work->finish();
        moduleTimes.push_back(moduleTime);
        floorTimes.push_back(floorTime);
        ratios.push_back(moduleTime / floorTime);
        state.SetIterationTime(moduleTime);
    }

    constexpr double kNanosecondsPerSecond = 1e9;
    double const perCall = kNanosecondsPerSecond / measured.calls;
    state.counters["module_ns"] = median(moduleTimes) * perCall;
    state.counters["floor_ns"] = median(floorTimes) * perCall;
    state.counters["ratio"] = median(ratios);
    state.counters["allocs"] = moduleAllocs;
    state.counters["floor_allocs"] = floorAllocs;
}

void registerCases(std::vector<Case> const& cases) {
    for (auto const& measured : cases) {
        benchmark::RegisterBenchmark(measured.name.c_str(), [measured](benchmark::State& state) {
            run(state, measured);
        })->UseManualTime();
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        registerCases(Bench::moduleCases());
#ifdef BENCH_HAS_LIBCAMERA
        registerCases(Bench::yardstickCases());
#endif
        Bench::registerThreads();
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
            return 1;
        }
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
