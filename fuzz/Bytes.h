// Turns the bytes of a fuzzer into values. Bytes that are used up read as zeros.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "ZoomOverrideTypes.h"

namespace fuzz {

class Bytes {
 public:
    Bytes(uint8_t const* data, size_t size) : mRest(data, size) {}

    bool isEmpty() const { return mRest.empty(); }

    template <typename T>
    T raw() {
        T value{};
        size_t const size = std::min(sizeof value, mRest.size());
        if (size != 0) {  // where nothing is left there may be no memory either
            std::memcpy(&value, mRest.data(), size);
        }
        mRest = mRest.subspan(size);
        return value;
    }

    bool flag() { return (raw<uint8_t>() & 1U) != 0; }

    /// From 0 to count - 1.
    uint32_t pick(uint32_t count) { return raw<uint8_t>() % count; }

    /// Mostly of the size that cameras have, at times anything.
    int32_t pixels() { return pick(8) == 0 ? raw<int32_t>() : raw<int16_t>(); }

    /// Mostly of the size that ratios and scales have, at times any bits: NaN, infinities.
    float number() {
        return pick(8) == 0 ? raw<float>() : static_cast<float>(raw<int16_t>()) / 1024.0F;
    }

    NSCam::MSize size() { return {pixels(), pixels()}; }
    NSCam::MRect rect() { return {pixels(), pixels(), pixels(), pixels()}; }
    NSCam::MRectF rectF() { return {number(), number(), number(), number()}; }

 private:
    std::span<uint8_t const> mRest;
};

}  // namespace fuzz
