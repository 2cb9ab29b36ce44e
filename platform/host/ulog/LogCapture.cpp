// Where the lines of both sinks end: in liblog, and in the capture while it is on.
#include "host/LogCapture.h"

#include <android/log.h>

#include <atomic>
#include <mutex>
#include <utility>

namespace NSCam::Host {
namespace {

struct Capture {
    std::atomic<bool> on{false};  // written with the mutex held; without it only a hint
    std::mutex mutex;
    std::vector<LogLine> lines;
};

Capture& capture() {
    static auto& instance = *new Capture;  // never destroyed: used also while the process exits
    return instance;
}

// Debug lines have level 0 in the print sink and 5 in the unified one; the rest agrees.
android_LogPriority priorityOf(int32_t level) {
    switch (level) {
        case 1:
            return ANDROID_LOG_ERROR;
        case 2:
            return ANDROID_LOG_WARN;
        case 3:
            return ANDROID_LOG_INFO;
        default:
            return ANDROID_LOG_DEBUG;
    }
}

}  // namespace

void captureLog(bool on) {
    std::lock_guard const lock(capture().mutex);
    capture().on.store(on, std::memory_order_relaxed);
    if (!on) {
        capture().lines.clear();
    }
}

std::vector<LogLine> takeCapturedLog() {
    std::lock_guard const lock(capture().mutex);
    return std::exchange(capture().lines, {});
}

void deliverLogLine(LogSink sink, char const* tag, int32_t level, std::string_view text) {
    std::string line(text);  // liblog needs the terminating zero
    __android_log_write(priorityOf(level), tag, line.c_str());

    if (!capture().on.load(std::memory_order_relaxed)) {
        return;
    }
    std::lock_guard const lock(capture().mutex);
    if (capture().on.load(std::memory_order_relaxed)) {
        capture().lines.push_back({sink, level, std::move(line)});
    }
}

}  // namespace NSCam::Host
