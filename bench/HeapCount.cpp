// Counts the heap allocations of the process by replacing the global operator new.
#include "HeapCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constinit std::atomic<uint64_t> gAllocations{0};

}  // namespace

void* operator new(std::size_t size) {
    // A load and a store: threads may lose a count, but what is timed is not held up by a lock.
    gAllocations.store(gAllocations.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace Bench {

uint64_t heapAllocations() {
    return gAllocations.load(std::memory_order_relaxed);
}

}  // namespace Bench
