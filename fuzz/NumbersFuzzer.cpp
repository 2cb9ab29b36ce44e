// The module's arithmetic against references in wider types, and against what people rely on: crops
// lie inside the sensor whenever they can, keep their shape, and stay when they are corrected
// again.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numbers>

#include "Bytes.h"
#include "DomainTransform.h"
#include "FatalEnd.h"
#include "Numbers.h"
#include "SensorCropMapper.h"
#include "ZoomOverrideMgr.h"
#include "host/SensorTable.h"

namespace {

using namespace NSCam;
using namespace NSCam::Feature;
using fuzz::Bytes;

constexpr double kMin32 = std::numeric_limits<int32_t>::min();
constexpr double kMax32 = std::numeric_limits<int32_t>::max();

void require(bool holds) {
    if (!holds) {
        __builtin_trap();
    }
}

int32_t saturate(double whole) {
    return std::isnan(whole) ? 0 : static_cast<int32_t>(std::clamp(whole, kMin32, kMax32));
}

int32_t truncated(double value) {
    return saturate(std::trunc(value));
}

// Adding one half is exact in double precision as long as the sum has 53 bits.
int32_t rounded(double value) {
    return saturate(std::copysign(std::floor(std::abs(value) + 0.5), value));
}

void conversions(Bytes& bytes) {
    auto const value = bytes.raw<float>();
    require(truncateToInt32(value) == truncated(value));
    require(roundToInt32(value) == rounded(value));
}

void wrapping(Bytes& bytes) {
    auto const a = bytes.raw<int32_t>();
    auto const b = bytes.raw<int32_t>();
    constexpr int64_t kTwoTo32 = int64_t{1} << 32U;
    auto const isCongruent = [](int64_t exact, int32_t result) {
        return (exact - result) % kTwoTo32 == 0;
    };
    require(isCongruent(int64_t{a} + b, wrapAdd(a, b)));
    require(isCongruent(int64_t{a} - b, wrapSub(a, b)));
}

/// Truncation may fall one short of the exact value, beside single precision's own error.
bool isAbout(int32_t result, double exact, double magnitude) {
    return std::abs(result - exact) <= 1.0 + magnitude * 4e-7;
}

void domains(Bytes& bytes) {
    NSCamHW::simplifiedMatrix const matrix{static_cast<float>(bytes.raw<int16_t>()) / 1024.0F,
                                           static_cast<float>(bytes.raw<int16_t>()),
                                           static_cast<float>(bytes.raw<int16_t>()) / 1024.0F,
                                           static_cast<float>(bytes.raw<int16_t>())};
    MRect const active{bytes.raw<int16_t>(), bytes.raw<int16_t>(), bytes.raw<int16_t>(),
                       bytes.raw<int16_t>()};
    MRect const tg = toTgDomain(matrix, active);
    auto const holds = [](int32_t result, double scale, double value, double offset) {
        return isAbout(result, scale * value + offset, std::abs(scale * value) + std::abs(offset));
    };
    require(holds(tg.x, matrix.xScale, active.x, matrix.xOffset));
    require(holds(tg.y, matrix.yScale, active.y, matrix.yOffset));
    require(holds(tg.w, matrix.xScale, active.w, 0.0));
    require(holds(tg.h, matrix.yScale, active.h, 0.0));
}

/// From 1 to 16384: what sensors and streams have.
int32_t side(Bytes& bytes) {
    return (bytes.raw<uint16_t>() & 0x3FFF) + 1;
}

/// One side follows from the other by the shape that the crop came with, to the nearest pixel.
bool keepsShape(MRect const& before, MRect const& after) {
    auto const follows = [](double result, double given, double from, double to) {
        double const exact = given * to / from;
        return std::abs(result - exact) <= 0.5 + exact * 1e-6;
    };
    return follows(after.h, after.w, before.w, before.h) ||
           follows(after.w, after.h, before.h, before.w);
}

bool liesInside(int32_t begin, int32_t length, int32_t sensor) {
    int64_t const end = int64_t{begin} + length;
    return length > sensor ? end == sensor : begin >= 0 && end <= sensor;
}

void correction(Bytes& bytes, ZoomOverrideMgr& mgr) {
    MSize const sensor{side(bytes), side(bytes)};
    MSize const minSize{side(bytes), side(bytes)};
    MRect const before{bytes.raw<int16_t>(), bytes.raw<int16_t>(), side(bytes), side(bytes)};
    Host::setSensor(0, {{1, {sensor, {}}}});
    mgr.initialize(ZoomOverrideMode::None);

    MRect fitted = before;
    mgr.correctTgCropRegion(0, 1, false, {}, fitted);
    require(fitted.w <= sensor.w && fitted.h <= sensor.h);
    require(liesInside(fitted.x, fitted.w, sensor.w) && liesInside(fitted.y, fitted.h, sensor.h));
    bool const fits = before.w <= sensor.w && before.h <= sensor.h;
    require(fits ? fitted.w == before.w && fitted.h == before.h : keepsShape(before, fitted));
    MRect again = fitted;
    mgr.correctTgCropRegion(0, 1, false, {}, again);
    require(again == fitted);

    MRect grown = before;
    mgr.correctTgCropRegion(0, 1, true, minSize, grown);
    require(grown.w >= minSize.w && grown.h >= minSize.h);
    require(liesInside(grown.x, grown.w, sensor.w) && liesInside(grown.y, grown.h, sensor.h));
    bool const isShrunkToNothing = fitted.w == 0 || fitted.h == 0;
    bool const isLargeEnough = fitted.w >= minSize.w && fitted.h >= minSize.h;
    require(isLargeEnough ? grown == fitted : isShrunkToNothing || keepsShape(fitted, grown));
}

double halfAngleTangent(float degrees) {
    return std::tan(degrees / 2.0 * std::numbers::pi / 180.0);
}

bool isCentred(int32_t begin, int32_t length, int32_t side) {
    return std::abs(2 * begin + length - side) <= 1;
}

void requireCentredSides(MRect const& crop, MRect const& array, double w, double h) {
    // A crop that is one pixel too large begins at 0 still, and is no reason for the array to stand
    // in: around the limit either answer will do.
    if (w > array.w + 2.1 || h > array.h + 2.1) {
        require(crop == array);
        return;
    }
    if (w > array.w - 1 || h > array.h - 1) {
        return;
    }
    require(isAbout(crop.w, w, w * 20) && isAbout(crop.h, h, h * 20));
    require(isCentred(crop.x, crop.w, array.w) && isCentred(crop.y, crop.h, array.h));
}

void mapping(Bytes& bytes) {
    auto const degrees = [&bytes] {
        return 1.0F + static_cast<float>(bytes.raw<uint16_t>()) * (168.0F / 65535.0F);
    };
    auto const optics = [&] {
        return ZoomOverrideSensorInfo{degrees(), degrees(), {0, 0, side(bytes), side(bytes)}};
    };
    auto const master = optics();
    auto const other = optics();
    float const zoom = 1.0F + static_cast<float>(bytes.raw<uint16_t>()) / 1024.0F;
    SensorCropMapper mapper({}, "");
    mapper.config({{0, 1},
                   {{0, std::make_shared<ZoomOverrideSensorInfo>(master)},
                    {1, std::make_shared<ZoomOverrideSensorInfo>(other)}}});
    SensorCropOutput out;
    require(mapper.getSensorCrop({.enable = true, .zoomRatio = zoom}, out) && out.isValid);

    auto const& array = master.activeArray;
    auto const& crop = out.sensorCrops.at(0);
    requireCentredSides(crop, array, array.w / double{zoom}, array.h / double{zoom});
    require(liesInside(crop.x, crop.w, array.w) && liesInside(crop.y, crop.h, array.h));
    if (crop.w == 0 || other.degreeH == master.degreeH) {
        return;
    }
    double const wider = halfAngleTangent(other.degreeH) / halfAngleTangent(master.degreeH);
    double const higher = halfAngleTangent(other.degreeV) / halfAngleTangent(master.degreeV);
    requireCentredSides(out.sensorCrops.at(1), other.activeArray,
                        other.activeArray.w / (wider * out.zoomRatio),
                        other.activeArray.h / (higher * out.zoomRatio));
}

void angles(Bytes& bytes) {
    auto const degrees = static_cast<float>(bytes.raw<int32_t>()) / 1024.0F;
    double const turn = std::fmod(double{degrees}, 360.0);
    double const exact = (turn < 0 ? turn + 360.0 : turn) * std::numbers::pi / 180.0;
    require(std::abs(SensorCropMapper::degreeToRadians(degrees) - exact) <= 1e-6);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    static auto const kManager = [] {
        fuzz::catchFatalConditions();
        return std::make_unique<ZoomOverrideMgr>();
    }();
    Bytes bytes(data, size);
    conversions(bytes);
    wrapping(bytes);
    domains(bytes);
    correction(bytes, *kManager);
    mapping(bytes);
    angles(bytes);
    return 0;
}
