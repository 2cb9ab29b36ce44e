#include "LineWriter.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <climits>
#include <csignal>
#include <string_view>
#include <utility>

#include "UnfinishedFile.h"

namespace zoomreplay {
namespace {

constexpr size_t kHeldBack = size_t{64} << 10U;

// A signal handler takes no context.
constinit std::atomic<LineWriter const*> gWriter = nullptr;

// The signal that is raised ends the process when this returns: a fault would come again by itself,
// but what somebody else sent would not.
void saveInCrash(int signal) {
    if (LineWriter const* const writer = gWriter.exchange(nullptr)) {
        writer->flushInCrash();
    }
    removeUnfinished();
    std::raise(signal);
}

}  // namespace

// What is no longer than PIPE_BUF gets into a pipe whole or not at all, whatever ends the process.
LineWriter::LineWriter(File& file)
    : mFile(file), mMost(file.size().has_value() ? kHeldBack : PIPE_BUF) {
    gWriter = this;
}

LineWriter::~LineWriter() {
    LineWriter const* self = this;
    gWriter.compare_exchange_strong(self, nullptr);
}

void LineWriter::endLine() {
    if (mText.size() > mMost) {
        flush();
    }
    mWhole = mText.size();
}

void LineWriter::flush() {
    size_t const whole = std::exchange(mWhole, 0);
    try {
        mFile.write(std::string_view(mText).substr(0, whole));
    } catch (UserError const&) {
        mText.clear();  // nothing may follow what is missing
        throw;
    }
    mText.erase(0, whole);
}

// The library's calls crash, between one line and the next: the members are in order.
void LineWriter::flushInCrash() const noexcept {
    ssize_t count = 0;
    for (size_t written = 0; written < mWhole && count >= 0;
         written += static_cast<size_t>(count)) {
        count = ::write(mFile.descriptor(), mText.data() + written, mWhole - written);
    }
}

void saveLinesOnCrash() {
    for (int const signal : std::array{SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_DFL) {  // sanitizers have handlers of their own
            action.sa_handler = saveInCrash;
            action.sa_flags = static_cast<int>(SA_RESETHAND);
            sigaction(signal, &action, nullptr);
        }
    }
}

}  // namespace zoomreplay
