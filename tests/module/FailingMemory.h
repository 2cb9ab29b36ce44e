// Memory that fails when a test wants it to; FailingMemory.cpp takes the place of operator new.
#pragma once

#include <cstdint>

/// How many allocations of this thread succeed before one fails; negative: all do.
inline thread_local int64_t allocationsBeforeFailure = -1;

/// Whether all of them fail.
inline thread_local bool isMemoryExhausted = false;
