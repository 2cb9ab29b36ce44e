// Memory that a process and its children see alike.
#pragma once

#include <sys/mman.h>

#include <cerrno>
#include <new>
#include <type_traits>

#include "base/Messages.h"

namespace zoomreplay {

/// A value that children made from now on share with this process.
template <typename T>
class Shared {
    static_assert(std::is_trivially_destructible_v<T>);

 public:
    /// @throws UserError there is no memory.
    Shared() {
        void* const place =
            mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (place == MAP_FAILED) {
            throw systemError("cannot share memory", errno);
        }
        mValue = new (place) T{};
    }
    Shared(Shared const&) = delete;
    Shared& operator=(Shared const&) = delete;
    ~Shared() { munmap(mValue, sizeof(T)); }

    T& operator*() const { return *mValue; }
    T* operator->() const { return mValue; }

 private:
    T* mValue;
};

}  // namespace zoomreplay
