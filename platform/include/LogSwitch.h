// A log switch: read on every log line by any thread, written rarely by whoever debugs.
#pragma once

#include <atomic>

namespace NSCam {

/// Reads and writes like a plain T, and costs no more, but may be shared between threads. Switches
/// order nothing, so relaxed accesses are enough.
template <typename T>
class LogSwitch {
 public:
    /// The value that a process starts with.
    constexpr explicit LogSwitch(T value) : mValue(value) {}

    /// Converts both ways on purpose: code that reads a switch must not care that it is shared.
    operator T() const { return mValue.load(std::memory_order_relaxed); }  // NOLINT(*-explicit-*)

    /// Sets the switch.
    LogSwitch& operator=(T value) {
        mValue.store(value, std::memory_order_relaxed);
        return *this;
    }

 private:
    std::atomic<T> mValue;
};

}  // namespace NSCam
