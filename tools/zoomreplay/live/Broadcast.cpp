// Keeps messages and wakes those who wait for one.
#include "Broadcast.h"

#include <algorithm>
#include <utility>

namespace zoomreplay {

void Broadcast::append(std::string text) {
    {
        std::lock_guard const lock(mMutex);
        put(std::move(text));
    }
    mChanged.notify_all();
}

void Broadcast::fold(std::string text) {
    {
        std::lock_guard const lock(mMutex);
        mEntries.resize(mFolded);
        put(std::move(text));
        mFolded = mEntries.size();
    }
    mChanged.notify_all();
}

void Broadcast::put(std::string text) {
    mEntries.push_back({++mLast, std::make_shared<std::string const>(std::move(text))});
}

void Broadcast::close() {
    {
        std::lock_guard const lock(mMutex);
        mIsClosed = true;
    }
    mChanged.notify_all();
}

Broadcast::Next Broadcast::next(uint64_t after, std::chrono::milliseconds patience) const {
    std::unique_lock lock(mMutex);
    mChanged.wait_for(lock, patience, [&] { return mLast > after || mIsClosed; });
    auto const found =
        std::upper_bound(mEntries.begin(), mEntries.end(), after,
                         [](uint64_t number, Entry const& e) { return number < e.number; });
    if (found == mEntries.end()) {
        return {nullptr, after, mIsClosed};
    }
    return {found->message, found->number, false};
}

}  // namespace zoomreplay
