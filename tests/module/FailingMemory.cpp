#include "FailingMemory.h"

#include <cstdlib>
#include <new>

namespace {

void* allocate(std::size_t size) {
    bool const fails = allocationsBeforeFailure >= 0 && allocationsBeforeFailure-- == 0;
    void* const memory = fails || isMemoryExhausted ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
