// What the pages of a live replay are told, from the beginning on.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace zoomreplay {

/// Messages that one thread writes and any number of others read, each at its own pace: no reader
/// holds up the writer or another reader, and who comes late gets all. Any thread.
class Broadcast {
 public:
    /// Never changes once it is in the broadcast.
    using Message = std::shared_ptr<std::string const>;

    void append(std::string text);

    /// A message that says again what those since the last fold said, and takes their place.
    void fold(std::string text);

    /// There is no more to come.
    void close();

    struct Next {
        Message message;  ///< null where there was none in time
        uint64_t number;  ///< of the message
        bool isOver;      ///< no more will come
    };

    /// The first message after one that has been read, 0 before the first. Waits for one.
    Next next(uint64_t after, std::chrono::milliseconds patience) const;

 private:
    struct Entry {
        uint64_t number;
        Message message;
    };

    void put(std::string text);

    mutable std::mutex mMutex;
    mutable std::condition_variable mChanged;
    std::vector<Entry> mEntries;  // by number
    size_t mFolded = 0;           // how many of them are folds
    uint64_t mLast = 0;
    bool mIsClosed = false;
};

}  // namespace zoomreplay
