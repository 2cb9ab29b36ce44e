// What the replay's thread waits for.
#pragma once

#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <optional>

#include "Copy.h"
#include "Feed.h"

namespace zoomreplay {

/// Input, signals that end the session, the time at which something must be told, and what other
/// threads ask for.
class Attention {
 public:
    /// From here on signals that end a process end the waiting instead. To be made before any
    /// thread. @param feed outlives it
    /// @throws UserError
    explicit Attention(Feed& feed);
    Attention(Attention const&) = delete;
    Attention& operator=(Attention const&) = delete;
    ~Attention();

    /// Waits until there is something to read. @return false when a signal has ended the session
    bool untilReadable(int descriptor);

    /// Waits for such a signal.
    void untilEnded();

    /// Any other thread: what a copy of the process writes, made between two lines of the replay.
    /// Empty where the replay comes to no rest in time.
    std::optional<Copy> copy(Copy::Work work);

 private:
    struct Task {
        Copy::Work work;
        std::promise<Copy> result;
    };

    bool wait(int descriptor);
    void makeCopy();

    Feed& mFeed;
    int mSignals;
    int mTold;  // counts the tasks
    bool mIsEnded = false;
    Feed::Clock::time_point mNextCopy;
    std::mutex mMutex;
    std::deque<Task> mTasks;
};

}  // namespace zoomreplay
