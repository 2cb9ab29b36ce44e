// Waits with poll, and does between two lines what others asked for.
#include "Attention.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <utility>

#include "base/Messages.h"

namespace zoomreplay {
namespace {

constexpr auto kTaskPatience = std::chrono::seconds(30);
constexpr auto kCopyPause = std::chrono::milliseconds(50);  // copying stops the replay for a moment

// As poll wants it: rounded up, so that nothing is waited for twice.
int millisecondsUntil(std::optional<Feed::Clock::time_point> due) {
    if (!due.has_value()) {
        return -1;
    }
    auto const rest = std::chrono::ceil<std::chrono::milliseconds>(*due - Feed::Clock::now());
    return std::max(0, static_cast<int>(rest.count()));
}

}  // namespace

Attention::Attention(Feed& feed) : mFeed(feed) {
    sigset_t ending;
    sigemptyset(&ending);
    for (int const signal : std::array{SIGHUP, SIGINT, SIGTERM}) {
        sigaddset(&ending, signal);
    }
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    mSignals = signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);
    mTold = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | EFD_SEMAPHORE);
    if (mSignals < 0 || mTold < 0) {
        throw systemError("cannot wait for signals", errno);
    }
}

Attention::~Attention() {
    close(mSignals);
    close(mTold);
}

bool Attention::untilReadable(int descriptor) {
    while (!mIsEnded) {
        if (wait(descriptor)) {
            return true;
        }
    }
    return false;
}

void Attention::untilEnded() {
    while (!mIsEnded) {
        wait(-1);
    }
}

// Whether the descriptor can be read.
bool Attention::wait(int descriptor) {
    bool const mayCopy = Feed::Clock::now() >= mNextCopy;
    std::array<pollfd, 3> events{
        {{descriptor, POLLIN, 0}, {mSignals, POLLIN, 0}, {mayCopy ? mTold : -1, POLLIN, 0}}};
    auto const due = mFeed.due();
    poll(events.data(), events.size(),
         millisecondsUntil(mayCopy ? due : std::min(mNextCopy, due.value_or(mNextCopy))));
    if (mFeed.due().has_value() && Feed::Clock::now() >= *mFeed.due()) {
        mFeed.tell();
    }
    mIsEnded = mIsEnded || events[1].revents != 0;
    if (events[2].revents != 0) {
        makeCopy();
    }
    return !mIsEnded && events[0].revents != 0;
}

void Attention::makeCopy() {
    uint64_t one = 0;
    if (::read(mTold, &one, sizeof one) < 0) {
        return;
    }
    Task task;
    {
        std::lock_guard const lock(mMutex);
        task = std::move(mTasks.front());
        mTasks.pop_front();
    }
    try {
        task.result.set_value(Copy(task.work));
    } catch (UserError const&) {
        task.result.set_exception(std::current_exception());
    }
    mNextCopy = Feed::Clock::now() + kCopyPause;
}

std::optional<Copy> Attention::copy(Copy::Work work) {
    std::future<Copy> result;
    {
        std::lock_guard const lock(mMutex);
        result = mTasks.emplace_back(Task{std::move(work), {}}).result.get_future();
    }
    uint64_t const one = 1;
    if (::write(mTold, &one, sizeof one) < 0 ||
        result.wait_for(kTaskPatience) != std::future_status::ready) {
        return std::nullopt;
    }
    return result.get();
}

}  // namespace zoomreplay
