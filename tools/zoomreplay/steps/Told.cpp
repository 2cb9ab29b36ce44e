#include "Told.h"

#include "Properties.h"
#include "ZoomOverrideContract.h"
#include "host/LogCapture.h"
#include "scenario/text/Modes.h"

namespace zoomreplay {

using namespace scenario;
using namespace NSCam;
using namespace NSCam::Feature;

void Told::take(uint64_t line, Input const& input) {
    std::visit([&](auto const& kind) { takeKind(line, kind); }, input);
}

void Told::takeKind(uint64_t /*line*/, SensorInput const& input) {
    mSensors[static_cast<uint32_t>(input.sensorId)] = input.modes;
}

void Told::takeKind(uint64_t line, PublishInput const& input) {
    mPublished = {input.entry, line};
}

// What is published stays, and so do the sensors.
void Told::takeKind(uint64_t /*line*/, InitializeInput const& input) {
    mMode = input.modeInPlace();
    mLatest = {};
    mDeposits.clear();
    mKeptP1.clear();
    mSizes.clear();
    mPorts = {};
    mMetadata = {};
    mSetting = {};
    mAngles = {};
    mFsp = {};
    mMapper = nullptr;
}

void Told::takeKind(uint64_t line, SensorInfoInput const& input) {
    if (traitsOf(mMode).takesSensors) {
        mAngles = {{input.config.sensorIds, input.config.sensorInfos}, line};
        mMapper = nullptr;
    }
}

void Told::takeKind(uint64_t line, FspInput const& input) {
    if (traitsOf(mMode).takesSensors) {
        mFsp = {input.config, line};
    }
}

void Told::takeKind(uint64_t /*line*/, PortsInput const& input) {
    mPorts = input.config;
}

void Told::takeKind(uint64_t line, DepositInput const& input) {
    if (input.notice != OverrideNotice::Repeating) {
        mLatest = {std::make_shared<RunTimeCropNeedData const>(input.data), line};
    }
    mDeposits[input.requestNo] = mLatest;
}

void Told::takeKind(uint64_t line, MetadataInput const& input) {
    if (traitsOf(mMode).source != OverrideSource::Metadata) {
        return;
    }
    mMetadata.line = line;
    IMetadata::getEntry(&input.metadata, kZoomRatioTag, mMetadata.zoomRatio, 0);

    auto const items = input.metadata.entryFor(kCustomStreamCropTag, 0);
    auto const item = [&items](uint32_t index) { return items.itemAt<int32_t>(index); };
    mMetadata.isUsable = items.count() >= kItemsPerCustomCrop && item(0) >= 0;
    if (!mMetadata.isUsable) {
        return;
    }
    mMetadata.crops.clear();
    for (uint32_t i = 0; i < items.count(); i += kItemsPerCustomCrop) {
        auto const stream = input.streamIdMap.find(static_cast<uint32_t>(item(i)));
        if (stream != input.streamIdMap.end()) {
            mMetadata.crops.insert_or_assign(
                static_cast<int64_t>(stream->second),
                MRect{item(i + 1), item(i + 2), item(i + 3), item(i + 4)});
        }
    }
}

void Told::takeKind(uint64_t line, SettingInput const& input) {
    if (traitsOf(mMode).source != OverrideSource::Setting) {
        return;
    }
    if (input.notice != OverrideNotice::Repeating) {
        mSetting = {{}, line, 0};
        if (input.setting != nullptr) {
            mSetting.value = *input.setting;
        }
    } else if (mSetting.value.has_value()) {
        mSetting.value->requestNo = input.requestNo;
        mSetting.renewedBy = line;
    }
}

void Told::takeKind(uint64_t /*line*/, CorrectionInput const& input) {
    outputSize(static_cast<uint32_t>(input.sensorId), static_cast<uint32_t>(input.sensorMode));
}

void Told::takeKind(uint64_t /*line*/, DoneInput const& input) {
    mDeposits.erase(input.requestNo);
    mKeptP1.erase(input.requestNo);
}

// The library reads its properties once.
void Told::takeKind(uint64_t /*line*/, ManagerInput const& /*input*/) {
    auto const isSet = [](char const* name) {
        return Utils::Properties::property_get_int32(name, 0) != 0;
    };
    mIsP1Closed = isSet(kCloseP1Property);
    mIsP2Closed = isSet(kCloseP2Property);
}

void Told::answeredP1(uint32_t requestNo, uint64_t line) {
    if (mMode != ZoomOverrideMode::None && !isP1Closed()) {
        mKeptP1.try_emplace(requestNo, line);
    }
}

Told::Deposit const* Told::deposit(uint32_t requestNo) const {
    auto const found = mDeposits.find(requestNo);
    return found == mDeposits.end() || found->second.data == nullptr ? nullptr : &found->second;
}

std::optional<uint64_t> Told::keptP1Since(uint32_t requestNo) const {
    auto const found = mKeptP1.find(requestNo);
    return found == mKeptP1.end() ? std::nullopt : std::optional(found->second);
}

bool Told::hasPort(uint32_t sensorId, uint16_t port) const {
    auto const sensor = mPorts.portSizes.find(sensorId);
    return sensor != mPorts.portSizes.end() &&
           sensor->second.find(static_cast<uint8_t>(port & 0xFFU)) != sensor->second.end();
}

NSCamHW::simplifiedMatrix const* Told::matrixOf(uint32_t sensorId, uint32_t mode) const {
    auto const sensor = mSensors.find(sensorId);
    if (sensor == mSensors.end()) {
        return nullptr;
    }
    auto const found = sensor->second.find(mode);
    return found != sensor->second.end() && found->second.fromActive.has_value()
               ? &*found->second.fromActive
               : nullptr;
}

MSize Told::outputSize(uint32_t sensorId, uint32_t mode) {
    auto& sizes = mSizes[sensorId];
    if (auto const known = sizes.find(mode); known != sizes.end()) {
        return known->second;
    }
    auto const sensor = mSensors.find(sensorId);
    if (sensor == mSensors.end()) {
        return {};
    }
    auto const found = sensor->second.find(mode);
    if (found == sensor->second.end() || !found->second.size.has_value()) {
        return {};  // the library stops the process over it
    }
    return sizes[mode] = *found->second.size;
}

SensorCropOutput Told::mapPublished() {
    SensorCropOutput output;
    try {
        askMapper(output);
    } catch (...) {  // a customer's mapper may throw anything: what it asked for is not known
        output = {};
    }
    Host::takeCapturedLog();  // what this mapper logs is not the scenario's
    return output;
}

void Told::askMapper(SensorCropOutput& output) {
    if (mMapper == nullptr) {
        mMapper = ISensorCropMapperFactory::createSensorCropMapperInstance({.externalApi = true});
        if (mMapper != nullptr && mAngles.line != 0) {
            mMapper->config(mAngles.config);
        }
    }
    if (mMapper != nullptr) {
        mMapper->getSensorCrop(
            {.enable = mPublished.entry.enable, .zoomRatio = mPublished.entry.zoomRatio}, output);
    }
}

}  // namespace zoomreplay
