// Sequences of interface calls over all modes, decoded from bytes, on a platform of fuzzed sensors.
// Whatever the arguments, a call returns, throws out_of_range or ends in a fatal condition.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Bytes.h"
#include "CustomZoomRatioOverride.h"
#include "FatalEnd.h"
#include "IGenericContainer.h"
#include "IMetadata.h"
#include "IZoomOverrideMgr.h"
#include "ULogger.h"
#include "ZoomOverrideContract.h"
#include "host/PropertyStore.h"
#include "host/SensorTable.h"
#include "scenario/text/JsonText.h"
#include "scenario/text/Modes.h"

namespace {

using namespace NSCam;
using namespace NSCam::Feature;
using fuzz::Bytes;

using Entry = std::shared_ptr<v3::CustomZoomRatioOverride>;

// Few keys, so that calls meet each other's data.
constexpr uint32_t kSensors = 3;
constexpr uint32_t kStreams = 6;
constexpr uint32_t kRequests = 4;

int64_t stream(Bytes& bytes) {
    auto const index = bytes.pick(kStreams);
    return streamIdOf(index % kSensors, static_cast<uint16_t>(P1Port::P1_PORT_R1 + index / 2));
}

template <typename Add>
void times(uint32_t count, Add add) {
    for (uint32_t i = 0; i < count; ++i) {
        add();
    }
}

void defineSensor(Bytes& bytes) {
    Host::SensorModes modes;
    auto const id = static_cast<int32_t>(bytes.pick(kSensors));
    times(bytes.pick(4), [&] {
        auto& mode = modes[bytes.pick(3)];
        if (bytes.pick(8) != 0) {
            mode.size = bytes.size();
        }
        if (bytes.pick(8) != 0) {
            mode.fromActive = {bytes.number(), bytes.number(), bytes.number(), bytes.number()};
        }
    });
    Host::setSensor(id, std::move(modes));
}

void publish(Bytes& bytes) {
    static auto const kWriter = IGenericContainer<Entry>::createWriter(
        kCustomZoomContainer, kCustomZoomCapacity, kCustomZoomFlags);
    auto entry = std::make_shared<v3::CustomZoomRatioOverride>();
    *entry = {bytes.number(), bytes.flag()};
    kWriter->publish(bytes.pick(8) == 0 ? nullptr : std::move(entry));
}

void configSensorInfo(Bytes& bytes, IZoomOverrideMgr& mgr) {
    ZoomOverrideSensorInfoConfig config;
    times(bytes.pick(4), [&] {
        config.sensorIds.push_back(static_cast<int32_t>(bytes.pick(kSensors)));
        auto& info = config.sensorInfos[bytes.pick(kSensors)];
        if (bytes.pick(8) != 0) {
            info = std::make_shared<ZoomOverrideSensorInfo>(
                ZoomOverrideSensorInfo{bytes.number(), bytes.number(), bytes.rect()});
        }
    });
    mgr.configSensorInfo(config);
}

void configPorts(Bytes& bytes, IZoomOverrideMgr& mgr) {
    ZoomOverrideFspInfoConfig follow;
    ZoomOverrideSensorBehaviorInfoConfig ports;
    times(bytes.pick(4), [&] {
        follow.fspPorts[bytes.pick(kSensors)] =
            bytes.flag() ? uint16_t{P1Port::P1_PORT_R3} : bytes.raw<uint16_t>();
        ports.portSizes[bytes.pick(kSensors)][static_cast<uint8_t>(bytes.pick(4))] = bytes.size();
    });
    mgr.configFspInfo(follow);
    mgr.configSensorBehaviorInfo(ports);
}

void deposit(Bytes& bytes, IZoomOverrideMgr& mgr) {
    RunTimeCropNeedData data;
    times(bytes.pick(4), [&] {
        auto& mode = data.sensorModes[bytes.pick(kSensors)];
        mode = bytes.pick(8) == 0 ? kSensorNotStreaming : bytes.pick(3);
    });
    times(bytes.pick(6), [&] { data.streamSizes[stream(bytes)] = bytes.size(); });
    times(bytes.pick(3), [&] { data.constraintStreams[stream(bytes)] = stream(bytes); });
    mgr.setRunTimeCropNeedData(bytes.pick(kRequests), OverrideNotice{bytes.pick(8) == 0 ? 1 : 0},
                               std::move(data));
}

void storeMetadata(Bytes& bytes, IZoomOverrideMgr& mgr) {
    IMetadata metadata;
    if (bytes.pick(16) != 0) {
        metadata.update(kZoomRatioTag, IMetadata::IEntry(std::vector{bytes.number()}));
    }
    std::vector<int32_t> items;
    times(bytes.pick(5), [&] {
        items.push_back(static_cast<int32_t>(bytes.pick(kStreams)));
        times(4, [&] { items.push_back(bytes.pixels()); });
    });
    items.resize(items.size() - std::min<size_t>(items.size(), bytes.pick(8) / 5U));
    metadata.update(kCustomStreamCropTag, IMetadata::IEntry(std::move(items)));
    std::unordered_map<uint32_t, uint64_t> ids;
    times(bytes.pick(7), [&] { ids[bytes.pick(kStreams)] = static_cast<uint64_t>(stream(bytes)); });
    mgr.storeOverrideSetting(&metadata, ids);
}

void storeSetting(Bytes& bytes, IZoomOverrideMgr& mgr) {
    auto setting = std::make_shared<ZoomOverrideSetting>();
    setting->overrideValid = bytes.pick(8) != 0;
    setting->requestNo = bytes.pick(kRequests + 4);
    setting->zoomRatio = bytes.number();
    setting->overrideRect = bytes.rect();
    times(bytes.pick(4), [&] { setting->previewAaCrops[bytes.pick(kSensors)] = bytes.rectF(); });
    times(bytes.pick(3), [&] { setting->extraAaCrops[bytes.pick(kSensors)] = bytes.rectF(); });
    mgr.storeOverrideSetting(bytes.pick(kRequests + 4), OverrideNotice{bytes.pick(8) == 0 ? 1 : 0},
                             bytes.pick(16) == 0 ? nullptr : std::move(setting));
}

ZoomOverrideRequest request(Bytes& bytes) {
    return {bytes.pick(kRequests), bytes.number(), static_cast<int32_t>(bytes.pick(kSensors))};
}

// A need's mode is written whenever a query answers: this one no strategy has.
constexpr auto kUnwritten = ZoomOverrideMode{-7};

void require(bool holds) {
    if (!holds) {
        __builtin_trap();
    }
}

// Equal where a NaN is, too.
template <typename Record>
bool areAlike(Record const& a, Record const& b) {
    std::string textOfA;
    std::string textOfB;
    scenario::appendJson(textOfA, a);
    scenario::appendJson(textOfB, b);
    return textOfA == textOfB;
}

void askP1(Bytes& bytes, IZoomOverrideMgr& mgr) {
    auto const asked = request(bytes);
    ZoomOverrideP1Need first;
    first.mode = kUnwritten;
    bool const answer = mgr.getP1CropSetting(asked, first);
    ZoomOverrideP1Need second;
    second.mode = kUnwritten;
    require(mgr.getP1CropSetting(asked, second) == answer);
    require(areAlike(first, second));
    require(mgr.getZoomOverrideMode() != ZoomOverrideMode::ByRequest || !answer);
}

void askP2(Bytes& bytes, IZoomOverrideMgr& mgr) {
    ZoomOverrideP2Need need;
    bool const answer = mgr.getP2CropSetting(request(bytes), need, bytes.flag());
    require(!answer || need.overrideValid);
    require(!answer || need.mode == mgr.getZoomOverrideMode());
}

void correct(Bytes& bytes, IZoomOverrideMgr& mgr) {
    MRect crop = bytes.rect();
    require(mgr.correctTgCropRegion(static_cast<int32_t>(bytes.pick(kSensors)),
                                    static_cast<int32_t>(bytes.pick(3)), bytes.flag(), bytes.size(),
                                    crop));
}

// Without a strategy, which would end the process.
void ask3A(Bytes& bytes, IZoomOverrideMgr& mgr) {
    auto const asked = request(bytes);
    ZoomOverride3ANeed need;
    require(mgr.getZoomOverrideMode() != ZoomOverrideMode::None ||
            !mgr.get3ACropSetting(asked, need));
}

void callOnce(Bytes& bytes, IZoomOverrideMgr& mgr) {
    switch (bytes.pick(17)) {
        case 0:
            return defineSensor(bytes);
        case 1:
            return publish(bytes);
        case 2:
            return configSensorInfo(bytes, mgr);
        case 3:
            return configPorts(bytes, mgr);
        case 4:
        case 5:
            return deposit(bytes, mgr);
        case 6:
            return storeMetadata(bytes, mgr);
        case 7:
            return storeSetting(bytes, mgr);
        case 8:
        case 9:
            return askP1(bytes, mgr);
        case 10:
        case 11:
            return askP2(bytes, mgr);
        case 12:
            return correct(bytes, mgr);
        case 13:
            require(mgr.onRequestDone(bytes.pick(kRequests)));
            return;
        case 14:
            mgr.isPortExist(static_cast<int32_t>(bytes.pick(kSensors)),
                            static_cast<int32_t>(bytes.pick(4)));
            return;
        case 15:
            return ask3A(bytes, mgr);
        default:
            require(mgr.getHistoryCropNeedData(static_cast<int32_t>(bytes.pick(kRequests))) !=
                    nullptr);
    }
}

IZoomOverrideMgr& manager() {
    static auto const kManager = [] {
        fuzz::catchFatalConditions();
        // All log lines are made: their arguments are the input's, too.
        Host::setProperty(kLogLevelProperty, 3);
        Utils::ULog::ULogger::sDetailsLevel = 5;
        return IZoomOverrideMgr::getInstance();
    }();
    return *kManager;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    auto& mgr = manager();
    Bytes bytes(data, size);
    Host::clearSensors();
    // All modes, and a value that is none.
    static auto const kModes = static_cast<uint32_t>(scenario::allModes().size() + 1);
    auto const mode = ZoomOverrideMode{static_cast<int32_t>(bytes.pick(kModes))};
    mgr.initialize(mode);
    IGenericContainer<Entry>::createWriter(kCustomZoomContainer, kCustomZoomCapacity,
                                           kCustomZoomFlags)
        ->publish(nullptr);
    fuzz::untilPromisedEnd([&] {
        for (uint32_t call = 0; call < 100 && !bytes.isEmpty(); ++call) {
            // A pipeline that met a table without a key goes on.
            try {
                callOnce(bytes, mgr);
            } catch (std::out_of_range const&) {
            }
        }
    });
    // Whatever came before, the manager works.
    require(mgr.initialize(ZoomOverrideMode::None));
    return 0;
}
