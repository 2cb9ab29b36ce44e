// Keeps what was handed over, and asks a mapper what it means for each sensor.
#include "AskedCrops.h"

#include <limits>

#include "ZoomOverrideContract.h"
#include "host/LogCapture.h"

namespace zoomreplay {
namespace {

using namespace NSCam;           // NOLINT(google-build-using-namespace)
using namespace NSCam::Feature;  // NOLINT(google-build-using-namespace)

int32_t truncated(float value) {
    using Limits = std::numeric_limits<int32_t>;
    constexpr float kBound = 2147483648.0F;
    if (!(value > -kBound)) {
        return value <= -kBound ? Limits::min() : 0;  // NaN is no pixel
    }
    return value < kBound ? static_cast<int32_t>(value) : Limits::max();
}

}  // namespace

template <typename Rect>
MRect toTg(NSCamHW::simplifiedMatrix const& matrix, Rect const& active) {
    return {truncated(matrix.xScale * static_cast<float>(active.x) + matrix.xOffset),
            truncated(matrix.yScale * static_cast<float>(active.y) + matrix.yOffset),
            truncated(matrix.xScale * static_cast<float>(active.w)),
            truncated(matrix.yScale * static_cast<float>(active.h))};
}

template MRect toTg(NSCamHW::simplifiedMatrix const& matrix, MRect const& active);
template MRect toTg(NSCamHW::simplifiedMatrix const& matrix, MRectF const& active);

void AskedCrops::take(ZoomOverrideSensorInfoConfig const& config) {
    mSensors = {config.sensorIds, config.sensorInfos};
    mMapper = nullptr;
}

void AskedCrops::take(MetadataInput const& input) {
    constexpr uint32_t kItemsPerCrop = 5;
    auto const items = input.metadata.entryFor(kCustomStreamCropTag, 0);
    auto const item = [&items](uint32_t index) { return items.itemAt<int32_t>(index); };
    if (items.count() < kItemsPerCrop || item(0) < 0) {
        return;
    }

    mCustom.clear();
    for (uint32_t i = 0; i < items.count(); i += kItemsPerCrop) {
        auto const stream = input.streamIdMap.find(static_cast<uint32_t>(item(i)));
        if (stream != input.streamIdMap.end()) {
            mCustom[static_cast<int64_t>(stream->second)] = {item(i + 1), item(i + 2), item(i + 3),
                                                             item(i + 4)};
        }
    }
}

void AskedCrops::reset() {
    mCustom.clear();
    mSensors = {};
    mMapper = nullptr;
}

std::optional<MRect> AskedCrops::custom(int64_t streamId) const {
    auto const crop = mCustom.find(streamId);
    return crop == mCustom.end() ? std::nullopt : std::optional(crop->second);
}

std::unordered_map<uint32_t, MRect> AskedCrops::published() {
    if (mMapper == nullptr) {
        mMapper = ISensorCropMapperFactory::createSensorCropMapperInstance({.externalApi = true});
        if (mMapper != nullptr) {
            mMapper->config(mSensors);
        }
    }
    SensorCropOutput output;
    if (mMapper != nullptr) {
        mMapper->getSensorCrop({.enable = mEntry.enable, .zoomRatio = mEntry.zoomRatio}, output);
    }
    Host::takeCapturedLog();  // what this mapper logs is not the scenario's
    return output.sensorCrops;
}

}  // namespace zoomreplay
