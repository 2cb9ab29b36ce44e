// Lines that call the manager, one function each.
#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>

#include "IMetadata.h"
#include "Library.h"
#include "Operations.h"
#include "scenario/json/Records.h"

namespace zoomreplay {

using namespace scenario;
using namespace NSCam;
using namespace NSCam::Feature;

namespace {

std::optional<Answer> initialize(Fields& fields, Library& library) {
    auto mode = ZoomOverrideMode::None;
    fields.required("mode", mode);
    fields.finish();

    auto answer = library.callManager(
        [&](IZoomOverrideMgr& manager) { return BoolAnswer{manager.initialize(mode)}; });
    library.announce(InitializeInput{[&library] {
        auto const told = library.callManager(
            [](IZoomOverrideMgr& manager) { return ModeAnswer{manager.getZoomOverrideMode()}; });
        auto const* const inPlace = std::get_if<ModeAnswer>(&told);
        return inPlace == nullptr ? ZoomOverrideMode::None : inPlace->mode;
    }});
    return answer;
}

std::optional<Answer> getZoomOverrideMode(Fields& fields, Library& library) {
    fields.finish();

    return library.callManager(
        [](IZoomOverrideMgr& manager) { return ModeAnswer{manager.getZoomOverrideMode()}; });
}

std::optional<Answer> configFspInfo(Fields& fields, Library& library) {
    ZoomOverrideFspInfoConfig config;
    readFields(fields, config);
    fields.finish();

    library.announce(FspInput{config});
    return library.callManager(
        [&](IZoomOverrideMgr& manager) { return BoolAnswer{manager.configFspInfo(config)}; });
}

std::optional<Answer> configSensorInfo(Fields& fields, Library& library) {
    ZoomOverrideSensorInfoConfig config;
    readFields(fields, config);
    fields.finish();

    library.announce(SensorInfoInput{config});
    return library.callManager(
        [&](IZoomOverrideMgr& manager) { return BoolAnswer{manager.configSensorInfo(config)}; });
}

std::optional<Answer> configSensorBehaviorInfo(Fields& fields, Library& library) {
    ZoomOverrideSensorBehaviorInfoConfig config;
    readFields(fields, config);
    fields.finish();

    library.announce(PortsInput{config});
    return library.callManager([&](IZoomOverrideMgr& manager) {
        return BoolAnswer{manager.configSensorBehaviorInfo(config)};
    });
}

std::optional<Answer> setRunTimeCropNeedData(Fields& fields, Library& library) {
    uint32_t requestNo = 0;
    auto notice = OverrideNotice::Default;
    RunTimeCropNeedData data;
    fields.required("requestNo", requestNo);
    fields.optional("notice", notice);
    readFields(fields, data);
    fields.finish();

    library.announce(DepositInput{requestNo, notice, data});
    return library.callManager([&](IZoomOverrideMgr& manager) {
        return BoolAnswer{manager.setRunTimeCropNeedData(requestNo, notice, std::move(data))};
    });
}

std::optional<Answer> storeMetadata(Fields& fields, Library& library) {
    IMetadata metadata;
    std::unordered_map<uint32_t, uint64_t> streamIdMap;
    fields.required("metadata", metadata);
    fields.optional("streamIdMap", streamIdMap);
    fields.finish();

    library.announce(MetadataInput{metadata, streamIdMap});
    return library.callManager([&](IZoomOverrideMgr& manager) {
        return BoolAnswer{manager.storeOverrideSetting(&metadata, streamIdMap)};
    });
}

std::optional<Answer> storeSetting(Fields& fields, Library& library) {
    uint32_t requestNo = 0;
    auto notice = OverrideNotice::Default;
    std::shared_ptr<ZoomOverrideSetting> setting;
    fields.required("requestNo", requestNo);
    fields.required("setting", setting);
    fields.optional("notice", notice);
    fields.finish();

    library.announce(SettingInput{requestNo, notice, setting.get()});
    return library.callManager([&](IZoomOverrideMgr& manager) {
        return BoolAnswer{manager.storeOverrideSetting(requestNo, notice, std::move(setting))};
    });
}

std::optional<Answer> storeOverrideSetting(Fields& fields, Library& library) {
    if (fields.has("metadata")) {
        return storeMetadata(fields, library);
    }
    if (fields.has("setting")) {
        return storeSetting(fields, library);
    }
    fields.fail("needs either metadata or a setting");
}

// Reads what all crop queries are asked with, and what the caller's record holds beforehand.
template <typename Need>
QueryAnswer<Need> readQuery(Fields& fields) {
    QueryAnswer<Need> query{};
    readFields(fields, query.request);
    fields.optional("need", query.need);
    return query;
}

std::optional<Answer> getP1CropSetting(Fields& fields, Library& library) {
    auto query = readQuery<ZoomOverrideP1Need>(fields);
    fields.finish();

    library.announce(QueryInput{Stage::P1, query.request, false, !fields.has("need"), &query.need});
    return library.callManager([&](IZoomOverrideMgr& manager) {
        query.result = manager.getP1CropSetting(query.request, query.need);
        return std::move(query);
    });
}

std::optional<Answer> getP2CropSetting(Fields& fields, Library& library) {
    auto query = readQuery<ZoomOverrideP2Need>(fields);
    bool manual = false;
    fields.optional("manual", manual);
    fields.finish();

    library.announce(
        QueryInput{Stage::P2, query.request, manual, !fields.has("need"), &query.need});
    return library.callManager([&](IZoomOverrideMgr& manager) {
        query.result = manager.getP2CropSetting(query.request, query.need, manual);
        return std::move(query);
    });
}

std::optional<Answer> get3ACropSetting(Fields& fields, Library& library) {
    auto query = readQuery<ZoomOverride3ANeed>(fields);
    fields.finish();

    library.announce(
        QueryInput{Stage::ThreeA, query.request, false, !fields.has("need"), &query.need});
    return library.callManager([&](IZoomOverrideMgr& manager) {
        query.result = manager.get3ACropSetting(query.request, query.need);
        return query;
    });
}

std::optional<Answer> onRequestDone(Fields& fields, Library& library) {
    uint32_t requestNo = 0;
    fields.required("requestNo", requestNo);
    fields.finish();

    library.announce(DoneInput{requestNo});
    return library.callManager(
        [&](IZoomOverrideMgr& manager) { return BoolAnswer{manager.onRequestDone(requestNo)}; });
}

// The operation takes the number as signed; both ways of writing the upper half are welcome.
std::optional<Answer> getHistoryCropNeedData(Fields& fields, Library& library) {
    constexpr int64_t kLowest = std::numeric_limits<int32_t>::min();
    constexpr int64_t kHighest = std::numeric_limits<uint32_t>::max();
    int64_t requestNo = 0;
    fields.required("requestNo", requestNo);
    fields.finish();
    if (requestNo < kLowest || requestNo > kHighest) {
        fields.fail("requestNo: out of range, must be " + std::to_string(kLowest) + " to " +
                    std::to_string(kHighest));
    }

    return library.callManager([&](IZoomOverrideMgr& manager) {
        return HistoryAnswer{manager.getHistoryCropNeedData(static_cast<int32_t>(requestNo))};
    });
}

std::optional<Answer> isPortExist(Fields& fields, Library& library) {
    int32_t sensorId = 0;
    int32_t port = 0;
    fields.required("sensorId", sensorId);
    fields.required("port", port);
    fields.finish();

    return library.callManager(
        [&](IZoomOverrideMgr& manager) { return BoolAnswer{manager.isPortExist(sensorId, port)}; });
}

std::optional<Answer> correctTgCropRegion(Fields& fields, Library& library) {
    CorrectionAnswer correction{};
    int32_t sensorMode = 0;
    bool checkMinSize = false;
    MSize minSize;
    fields.required("sensorId", correction.sensorId);
    fields.required("sensorMode", sensorMode);
    fields.optional("checkMinSize", checkMinSize);
    fields.optional("minSize", minSize);
    fields.required("crop", correction.crop);
    fields.finish();

    library.announce(CorrectionInput{correction.sensorId, sensorMode});
    return library.callManager([&](IZoomOverrideMgr& manager) {
        correction.result = manager.correctTgCropRegion(correction.sensorId, sensorMode,
                                                        checkMinSize, minSize, correction.crop);
        return correction;
    });
}

constexpr std::array kManagerOperations{
    Operation{"initialize", initialize},
    Operation{"getZoomOverrideMode", getZoomOverrideMode},
    Operation{"configFspInfo", configFspInfo},
    Operation{"configSensorInfo", configSensorInfo},
    Operation{"configSensorBehaviorInfo", configSensorBehaviorInfo},
    Operation{"setRunTimeCropNeedData", setRunTimeCropNeedData},
    Operation{"storeOverrideSetting", storeOverrideSetting},
    Operation{"getP1CropSetting", getP1CropSetting},
    Operation{"getP2CropSetting", getP2CropSetting},
    Operation{"get3ACropSetting", get3ACropSetting},
    Operation{"onRequestDone", onRequestDone},
    Operation{"getHistoryCropNeedData", getHistoryCropNeedData},
    Operation{"isPortExist", isPortExist},
    Operation{"correctTgCropRegion", correctTgCropRegion},
};

}  // namespace

std::span<Operation const> managerOperations() {
    return kManagerOperations;
}

}  // namespace zoomreplay
