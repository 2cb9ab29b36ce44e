// The module's number conversions. Any input gives a defined result, the same on every target:
// what a phone's CPU does, spelt out, since C++ leaves the overflowing cases undefined.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace NSCam::Feature {

/// Toward zero; saturates at the int32 range, NaN gives 0. For crops between domains.
inline int32_t truncateToInt32(float value) {
    constexpr float kTwoTo31 = 2147483648.0F;
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= kTwoTo31) {
        return std::numeric_limits<int32_t>::max();
    }
    if (value < -kTwoTo31) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(value);
}

/// To the nearest integer, halves away from zero; saturates at the int32 range, NaN gives 0. For
/// sizes that follow from an aspect ratio.
inline int32_t roundToInt32(float value) {
    return truncateToInt32(std::round(value));
}

/// Any NaN becomes the same one: the sign of a computed NaN differs between CPUs, and logs print
/// it.
inline float withPlainNan(float value) {
    return std::isnan(value) ? std::numeric_limits<float>::quiet_NaN() : value;
}

// Sums in unsigned integers would wrap, too, but devices are built with sanitizers that end the
// process at an overflow of either kind.

/// Sum in two's complement.
constexpr int32_t wrapAdd(int32_t a, int32_t b) {
    int32_t sum = 0;
    __builtin_add_overflow(a, b, &sum);
    return sum;
}

/// Difference in two's complement.
constexpr int32_t wrapSub(int32_t a, int32_t b) {
    int32_t difference = 0;
    __builtin_sub_overflow(a, b, &difference);
    return difference;
}

}  // namespace NSCam::Feature
