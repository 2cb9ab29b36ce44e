// The default sensor crop mapper. Which steps are taken in single and which in double precision
// decides the last pixel of a crop: the conversions below are spelt out one by one.
#include "SensorCropMapper.h"

#include <cmath>

#include "LogLines.h"
#include "Properties.h"
#include "ZoomOverrideContract.h"
#include "geometry/Numbers.h"

namespace NSCam::Feature {

namespace {

// The helpers log in the name of the operation that they serve.
constexpr char kGetSensorCrop[] = "getSensorCrop";

constexpr double kPi = 3.14159265358979323846;

/// The master's crop as the application sees it: centred in an array whose origin is (0, 0).
MRect appCropRegion(MRect const& array, float zoomRatio) {
    if (zoomRatio == 0.0F) {
        return {};
    }
    auto const width = static_cast<float>(array.w);
    auto const height = static_cast<float>(array.h);
    auto const w = truncateToInt32(width / zoomRatio);
    auto const h = truncateToInt32(height / zoomRatio);
    return {truncateToInt32((width - static_cast<float>(w)) * 0.5F),
            truncateToInt32((height - static_cast<float>(h)) * 0.5F), w, h};
}

/// A crop that begins at a negative coordinate is larger than its array: the array stands in.
MRect insideArray(MRect const& crop, MRect const& array) {
    return crop.x < 0 || crop.y < 0 ? array : crop;
}

/// The tangent, rounded once to single precision. The single-precision functions of the math
/// libraries differ in the last bit from one CPU to another (glibc's is off in one angle out of
/// 65); all agree on what their double-precision ones round to.
float tangent(float radians) {
    return static_cast<float>(std::tan(static_cast<double>(radians)));
}

}  // namespace

SensorCropMapper::SensorCropMapper(ISensorCropMapperFactory::CreationParams const&, char const*) {
    ZLOG_DEBUG("SCM: create instance +");
    ZLOG_DEBUG("SCM: create instance -");
}

bool SensorCropMapper::initialize(SensorCropMapperInit const&) {
    std::lock_guard const guard(mLock);
    return true;
}

bool SensorCropMapper::config(SensorCropMapperConfig const& config) {
    std::lock_guard const guard(mLock);
    mvSensorId = config.sensorIds;
    mvInfo = config.sensorInfos;
    mRatios.clear();
    return true;
}

bool SensorCropMapper::getSensorCrop(SensorCropInput const& in, SensorCropOutput& out) {
    std::lock_guard const guard(mLock);
    out.isValid = false;
    auto const master = masterInfo();
    if (!master) {
        ZLOG_ERROR("cannot find in mvInfo. sensorId(%d)",
                   mvSensorId.empty() ? -1 : mvSensorId.front());
        return false;
    }

    auto const& array = master->activeArray;
    auto const wanted = wantedZoom(in.zoomRatio);
    auto const region = appCropRegion(array, wanted.ratio);
    out.isValid = in.enable;
    out.zoomRatio = withPlainNan((static_cast<float>(array.w) - static_cast<float>(array.x)) /
                                 static_cast<float>(region.w));
    ZLOG_DEBUG("debug(%d), Zoom ratio(%f), appCropRegion(%d, %d), %dx%d", wanted.debug,
               out.zoomRatio, region.x, region.y, region.w, region.h);

    for (auto const& [sensorId, info] : mvInfo) {
        if (!info) {
            continue;
        }
        if (info->degreeH == master->degreeH) {
            out.sensorCrops.try_emplace(
                sensorId, cropLikeMaster(sensorId, info->activeArray, {region.w, region.h}));
            continue;
        }
        auto& kept = mRatios[sensorId];
        AngleRatios const ratios{kept.h.of(info->degreeH, master->degreeH),
                                 kept.v.of(info->degreeV, master->degreeV)};
        out.sensorCrops.try_emplace(
            sensorId, cropByAngle(sensorId, info->activeArray, ratios, out.zoomRatio));
    }
    return true;
}

std::shared_ptr<ZoomOverrideSensorInfo> SensorCropMapper::masterInfo() const {
    if (mvSensorId.empty()) {
        return nullptr;
    }
    auto const master = mvInfo.find(static_cast<uint32_t>(mvSensorId.front()));
    return master == mvInfo.end() ? nullptr : master->second;
}

SensorCropMapper::WantedZoom SensorCropMapper::wantedZoom(float zoomRatio) const {
    if (mLogLevel >= 3) {
        auto const tenths = Utils::Properties::property_get_int32(kMapperZoomRatioProperty, 0);
        if (tenths != 0) {
            return {static_cast<float>(tenths / 10.0), true};
        }
    }
    return {zoomRatio, false};
}

MRect SensorCropMapper::cropLikeMaster(uint32_t sensorId, MRect const& array,
                                       MSize masterCrop) const {
    // The array's own offset counts against the room that is left, other than for angles that
    // differ.
    auto const begin = [](int32_t offset, int32_t side, int32_t cropSide) {
        return wrapAdd(offset, wrapSub(side, wrapAdd(cropSide, offset)) / 2);
    };
    MRect const crop =
        insideArray({begin(array.x, array.w, masterCrop.w), begin(array.y, array.h, masterCrop.h),
                     masterCrop.w, masterCrop.h},
                    array);
    ZLOG_DEBUG_FOR(kGetSensorCrop, "cam(%d) activeCrop=(%d/%d/%dx%d)", sensorId, crop.x, crop.y,
                   crop.w, crop.h);
    return crop;
}

MRect SensorCropMapper::cropByAngle(uint32_t sensorId, MRect const& array, AngleRatios ratios,
                                    float zoomRatio) const {
    auto const w = truncateToInt32(static_cast<float>(array.w) / (ratios.h * zoomRatio));
    auto const h = truncateToInt32(static_cast<float>(array.h) / (ratios.v * zoomRatio));
    MRect const crop = insideArray({wrapAdd(array.x, wrapSub(array.w, w) / 2),
                                    wrapAdd(array.y, wrapSub(array.h, h) / 2), w, h},
                                   array);
    ZLOG_DEBUG_FOR(kGetSensorCrop,
                   "cam(%d) activeCrop=(%d/%d/%dx%d) degreeRatio_H=%f degreeRatio_V=%f", sensorId,
                   crop.x, crop.y, crop.w, crop.h, ratios.h, ratios.v);
    return crop;
}

float SensorCropMapper::KeptRatio::of(float degree, float masterDegree) {
    if (degree != mDegree || masterDegree != mMasterDegree) {
        mDegree = degree;
        mMasterDegree = masterDegree;
        mRatio = degreeRatio(degree, masterDegree);
    }
    return mRatio;
}

float SensorCropMapper::degreeToRadians(float degree) {
    float turn = std::fmod(degree, 360.0F);
    if (turn < 0.0F) {
        turn += 360.0F;
    }
    return static_cast<float>(static_cast<double>(turn) * kPi / 180.0);
}

float SensorCropMapper::degreeRatio(float degreeA, float degreeB) {
    return withPlainNan(tangent(degreeToRadians(degreeA * 0.5F)) /
                        tangent(degreeToRadians(degreeB * 0.5F)));
}

}  // namespace NSCam::Feature
