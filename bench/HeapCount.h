// Counts the heap allocations of the process, those of the shared libraries included.
#pragma once

#include <cstdint>

namespace Bench {

/// Allocations since the process started, by every thread.
uint64_t heapAllocations();

}  // namespace Bench
