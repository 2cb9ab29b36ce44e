// Makes a fatal condition of the library end a fuzzer's input instead of the process.
//
// The library ends the process through __android_log_assert, whose aborter may leave by an
// exception: that unwinds the manager's lock, so that the next input finds it free, and costs a
// thousandth of a fork. A device never gets there; only a fuzzer sees a library that survived.
#pragma once

#include <android/log.h>

#include <stdexcept>

namespace fuzz {

struct FatalEnd {};

/// Call once. Also keeps the library's log off standard error.
inline void catchFatalConditions() {
    __android_log_set_logger([](auto const*...) {});
    __android_log_set_aborter([](char const*) { throw FatalEnd{}; });
}

/// Runs what may end as the interface promises: well, fatally, or because a table lacks a key.
template <typename Run>
void untilPromisedEnd(Run run) {
    try {
        run();
    } catch (FatalEnd const&) {
    } catch (std::out_of_range const&) {
    }
}

}  // namespace fuzz
