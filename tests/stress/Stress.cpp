// Eight threads on the one manager: random calls in every order that a pipeline may use, with what
// must hold checked after each. Meant for ThreadSanitizer, but the answers count as well.
//
//     stress [calls [seed]]
//
// Some orders of calls end the process by promise: asking for a request that was never deposited,
// for one, and initialize takes away the deposits of all threads. The run is therefore cut into
// rounds, all threads starting a round together. In a steady round nobody initialises and every
// thread carries whole requests with numbers of its own; in a churning round every thread
// initialises whenever it likes and asks only what needs no deposit.
#include <android/log.h>

#include <array>
#include <atomic>
#include <barrier>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "CustomZoomRatioOverride.h"
#include "IGenericContainer.h"
#include "IMetadata.h"
#include "ISensorCropMapperFactory.h"
#include "IZoomOverrideMgr.h"
#include "ZoomOverrideContract.h"
#include "host/SensorTable.h"
#include "scenario/text/Modes.h"

namespace NSCam::Feature {
namespace {

constexpr uint32_t kThreads = 8;
constexpr uint32_t kActionsPerRound = 200;  // of each thread
constexpr int64_t kPreview = streamIdOf(0, 1);
constexpr uint32_t kRequestsPerThread = 1U << 24U;
constexpr uint32_t kBeyondAllRequests = 1U << 30U;
constexpr float kAsked = 100.0F;  // above every published ratio

// Crops of these ratios have whole sides on the sensor of 4000x3000.
constexpr std::array kRatios{1.0F, 2.0F, 4.0F, 5.0F};

// Mode 1 delivers the array as it is, mode 2 half of it in each direction.
MSize sensorSize(uint32_t mode) {
    return mode == 1 ? MSize{4000, 3000} : MSize{2000, 1500};
}

MRect centred(MSize sensor, MSize crop) {
    return {(sensor.w - crop.w) / 2, (sensor.h - crop.h) / 2, crop.w, crop.h};
}

struct Round {
    ZoomOverrideMode mode = ZoomOverrideMode::None;
    bool steady = true;
};

std::atomic<uint64_t> sCalls{0};

void check(bool holds, char const* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

class Worker {
 public:
    Worker(uint32_t index, uint32_t seed)
        : mRandom(seed * kThreads + index), mNextRequest(index * kRequestsPerThread) {}

    void run(Round const& round) {
        for (uint32_t i = 0; i < kActionsPerRound; ++i) {
            round.steady ? carryRequest(round.mode) : churn(round.mode);
        }
    }

    /// What a round needs before its first call: something to repeat, something to override with.
    void prepare(Round const& round) {
        call().initialize(round.mode);
        configure();
        deposit(mNextRequest, OverrideNotice::Default, 1);
        call().onRequestDone(mNextRequest);
        store(round.mode);
    }

 private:
    IZoomOverrideMgr& call() {
        sCalls.fetch_add(1, std::memory_order_relaxed);
        return *mMgr;
    }

    uint32_t pick(uint32_t count) { return static_cast<uint32_t>(mRandom() % count); }

    void configure() {
        static auto const kInfo = std::make_shared<ZoomOverrideSensorInfo>(
            ZoomOverrideSensorInfo{66.0F, 41.0F, {0, 0, 4000, 3000}});
        check(call().configSensorInfo({{0}, {{0, kInfo}}}), "configSensorInfo is true");
        check(call().configFspInfo({{{0, P1Port::P1_PORT_R3}}}), "configFspInfo is true");
        check(call().configSensorBehaviorInfo({{{0, {{uint8_t{1}, {}}, {uint8_t{3}, {}}}}}}),
              "configSensorBehaviorInfo is true");
    }

    void deposit(uint32_t requestNo, OverrideNotice notice, uint32_t sensorMode) {
        RunTimeCropNeedData data{{{0, sensorMode}}, {{kPreview, minSize(requestNo)}}, {}, {}};
        check(call().setRunTimeCropNeedData(requestNo, notice, std::move(data)),
              "setRunTimeCropNeedData is true");
    }

    void store(ZoomOverrideMode mode) {
        float const ratio = kRatios[pick(kRatios.size())];
        switch (mode) {
            case ZoomOverrideMode::InstantRequest:
                storeMetadata(ratio);
                break;
            case ZoomOverrideMode::ByRequest:
                storeSetting(ratio);
                break;
            case ZoomOverrideMode::ExternalAPI:
                mWriter->publish(std::make_shared<v3::CustomZoomRatioOverride>(
                    v3::CustomZoomRatioOverride{ratio, true}));
                break;
            case ZoomOverrideMode::None:
                break;
        }
    }

    void storeMetadata(float ratio) {
        IMetadata metadata;
        metadata.update(kZoomRatioTag, IMetadata::IEntry(std::vector{ratio}));
        metadata.update(kCustomStreamCropTag, IMetadata::IEntry(std::vector{7, 10, 10, 40, 30}));
        call().storeOverrideSetting(&metadata, {{7, static_cast<uint64_t>(kPreview)}});
    }

    void storeSetting(float ratio) {
        uint32_t const requestNo = kBeyondAllRequests + pick(1000);
        auto setting = std::make_shared<ZoomOverrideSetting>();
        setting->overrideValid = true;
        setting->requestNo = requestNo;
        setting->zoomRatio = ratio;
        setting->overrideRect.w = static_cast<int32_t>(ratio);
        setting->previewAaCrops[0] = {0.0F, 0.0F, 4000.0F / ratio, 3000.0F / ratio};
        call().storeOverrideSetting(requestNo, OverrideNotice::Default, std::move(setting));
    }

    /// Tells the requests of one thread from another's: no two neighbours share it.
    static MSize minSize(uint32_t requestNo) {
        auto const step = static_cast<int32_t>(requestNo % 97);
        return {400 + 8 * step, 300 + 6 * step};
    }

    void carryRequest(ZoomOverrideMode mode) {
        uint32_t const requestNo = mNextRequest++;
        uint32_t const sensorMode = 1 + pick(2);
        deposit(requestNo, OverrideNotice::Default, sensorMode);
        if (pick(4) == 0) {
            store(mode);
        }
        if (pick(8) == 0) {
            configure();
        }
        check(call().getZoomOverrideMode() == mode, "the mode is that of the round");
        switch (mode) {
            case ZoomOverrideMode::InstantRequest:
                askInstant(requestNo, sensorMode);
                break;
            case ZoomOverrideMode::ByRequest:
                askByRequest(requestNo, sensorMode);
                break;
            case ZoomOverrideMode::ExternalAPI:
                askExternal(requestNo, sensorMode);
                break;
            case ZoomOverrideMode::None:
                break;
        }
        if (pick(8) == 0) {
            repeat(mode);
        }
        call().onRequestDone(requestNo);
    }

    // Whoever deposited last, the record has a crop for the sensor.
    void repeat(ZoomOverrideMode mode) {
        uint32_t const requestNo = mNextRequest++;
        deposit(requestNo, OverrideNotice::Repeating, 0);
        if (mode == ZoomOverrideMode::ByRequest) {
            call().storeOverrideSetting(kBeyondAllRequests + pick(1000), OverrideNotice::Repeating,
                                        nullptr);
        }
        ZoomOverrideP1Need need;
        bool const answer = call().getP1CropSetting({requestNo, kAsked, 0}, need);
        check(answer == (mode != ZoomOverrideMode::ByRequest), "a repeated request is answered");
        call().onRequestDone(requestNo);
    }

    void askInstant(uint32_t requestNo, uint32_t sensorMode) {
        ZoomOverrideP1Need first;
        check(call().getP1CropSetting({requestNo, kAsked, 0}, first), "P1 is overridden");
        check(first.tgCrops[0][1] == centred(sensorSize(sensorMode), minSize(requestNo)),
              "the crop comes from the thread's own deposit");
        store(ZoomOverrideMode::InstantRequest);
        ZoomOverrideP1Need second;
        check(call().getP1CropSetting({requestNo, 0.0F, 1}, second), "the first answer is kept");
        check(second.zoomRatio == first.zoomRatio && second.tgCrops == first.tgCrops,
              "later answers equal the first");
    }

    void askByRequest(uint32_t requestNo, uint32_t sensorMode) {
        ZoomOverrideP1Need p1;
        check(!call().getP1CropSetting({requestNo, 1.0F, 0}, p1), "P1 is never overridden");
        ZoomOverrideP2Need p2;
        check(call().getP2CropSetting({requestNo, 1.0F, 0}, p2, pick(2) == 0), "P2 is overridden");
        check(p2.overrideRect.w == static_cast<int32_t>(p2.zoomRatio),
              "the setting is in one piece");
        check(p2.requestNo >= static_cast<int32_t>(kBeyondAllRequests), "the setting lies ahead");
        auto const sensor = sensorSize(sensorMode);
        auto const divisor = static_cast<int32_t>(p2.zoomRatio);
        check(p2.streamCrops[0] == MRect{0, 0, sensor.w / divisor, sensor.h / divisor},
              "the crop is the setting's, in the mode of the request");
    }

    void askExternal(uint32_t requestNo, uint32_t sensorMode) {
        auto const sensor = sensorSize(sensorMode);
        ZoomOverrideP1Need p1;
        check(call().getP1CropSetting({requestNo, kAsked, 0}, p1), "P1 is overridden");
        auto const divisor = static_cast<int32_t>(p1.zoomRatio);
        auto const expected = centred(sensor, {sensor.w / divisor, sensor.h / divisor});
        for (auto const port : {P1Port::P1_PORT_R1, P1Port::P1_PORT_R2, P1Port::P1_PORT_R3}) {
            check(p1.tgCrops[0][port] == expected, "the crop is that of the published ratio");
        }
        ZoomOverrideP2Need p2;
        check(call().getP2CropSetting({requestNo, 0.0F, 0}, p2, false), "P2 is overridden");
        check(p2.streamCrops.size() == 1, "P2 has one crop a sensor");
    }

    /// The ratio 0 is below no override's, which P1 refuses before it looks at the deposit.
    void churn(ZoomOverrideMode mode) {
        uint32_t const requestNo = mNextRequest + pick(50);
        ZoomOverrideP1Need need;
        switch (pick(8)) {
            case 0:
                check(call().initialize(mode), "initialize is true");
                break;
            case 1:
                configure();
                break;
            case 2:
                deposit(requestNo, OverrideNotice::Default, 1);
                break;
            case 3:
                store(mode);
                break;
            case 4:
                check(call().getZoomOverrideMode() == mode, "every thread initialises to one mode");
                break;
            case 5:
                if (mode != ZoomOverrideMode::ByRequest) {  // which needs a kept setting
                    check(!call().getP1CropSetting({requestNo, 0.0F, 0}, need), "P1 is refused");
                }
                break;
            case 6:
                check(IZoomOverrideMgr::getInstance() == mMgr, "there is one manager");
                break;
            default:
                check(call().onRequestDone(requestNo), "onRequestDone is true");
        }
    }

    using Container = IGenericContainer<std::shared_ptr<v3::CustomZoomRatioOverride>>;

    std::shared_ptr<IZoomOverrideMgr> const mMgr = IZoomOverrideMgr::getInstance();
    std::shared_ptr<Container::Writer> const mWriter =
        Container::createWriter(kCustomZoomContainer, kCustomZoomCapacity, kCustomZoomFlags);
    std::mt19937 mRandom;
    uint32_t mNextRequest;
};

void defineSensor() {
    NSCamHW::simplifiedMatrix const half{0.5F, 0.0F, 0.5F, 0.0F};
    Host::setSensor(0, {{1, {sensorSize(1), NSCamHW::simplifiedMatrix{1.0F, 0.0F, 1.0F, 0.0F}}},
                        {2, {sensorSize(2), half}}});
}

Round roundOf(uint32_t number) {
    static auto const kModes = scenario::overridingModes();
    return {kModes[number % kModes.size()], number / kModes.size() % 2 == 0};
}

// All at once, as the first of the process.
void raceForTheManager() {
    std::array<std::shared_ptr<IZoomOverrideMgr>, kThreads> managers;
    std::barrier start(kThreads);
    std::vector<std::jthread> threads;
    threads.reserve(kThreads);
    for (auto& manager : managers) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            manager = IZoomOverrideMgr::getInstance();
        });
    }
    threads.clear();
    for (auto const& manager : managers) {
        check(manager == managers.front(), "there is one manager");
    }
}

// A pipeline that configures a mapper of its own while another thread maps.
void raceForTheMapper() {
    auto const mapper = ISensorCropMapperFactory::createSensorCropMapperInstance({});
    auto const configure = [&](int32_t master) {
        auto const info = std::make_shared<ZoomOverrideSensorInfo>();
        *info = {80.0F, 60.0F, {0, 0, 4000, 3000}};
        mapper->config({{master}, {{static_cast<uint32_t>(master), info}}});
    };
    configure(0);
    std::jthread const configuring([&] {
        for (int32_t i = 0; i < 2000; ++i) {
            configure(i % 2);
        }
    });
    for (int32_t i = 0; i < 2000; ++i) {
        SensorCropOutput out;
        check(mapper->getSensorCrop({.enable = true, .zoomRatio = 2.0F}, out) &&
                  out.sensorCrops.size() == 1,
              "the master of a configuration is in it");
    }
}

void stress(uint64_t calls, uint32_t seed) {
    raceForTheManager();
    raceForTheMapper();
    defineSensor();
    Worker first(kThreads, seed);
    Round round;
    uint32_t number = 0;
    bool isOver = false;
    auto const beginRound = [&]() noexcept {
        isOver = sCalls.load() >= calls;
        round = roundOf(number++);
        first.prepare(round);
    };
    std::barrier turn(kThreads, beginRound);
    std::vector<std::jthread> threads;
    for (uint32_t index = 0; index < kThreads; ++index) {
        threads.emplace_back([&, index] {
            Worker worker(index, seed);
            while (true) {
                turn.arrive_and_wait();
                if (isOver) {
                    return;
                }
                worker.run(round);
            }
        });
    }
    threads.clear();
    std::printf("%llu calls of %u threads in %u rounds\n",
                static_cast<unsigned long long>(sCalls.load()), kThreads, number - 1);
}

}  // namespace
}  // namespace NSCam::Feature

int main(int argc, char** argv) {
    // What the library logs is not what is looked at here, and would be all that is seen.
    __android_log_set_logger([](auto const*...) {});
    uint64_t const calls = argc > 1 ? std::stoull(argv[1]) : 100'000;
    auto const seed = static_cast<uint32_t>(argc > 2 ? std::stoul(argv[2]) : 1);
    NSCam::Feature::stress(calls, seed);
}
