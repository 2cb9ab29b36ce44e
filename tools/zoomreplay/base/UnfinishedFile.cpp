#include "UnfinishedFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <utility>

namespace zoomreplay {
namespace {

// A signal handler takes no context, and may read little else. More files than these are not
// written at a time.
constinit std::array<std::atomic<char const*>, 4> gUnfinished{};

void removeAndEnd(int signal) {
    removeUnfinished();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void exchange(char const* from, char const* to) {
    for (auto& path : gUnfinished) {
        char const* expected = from;
        if (path.compare_exchange_strong(expected, to)) {
            return;
        }
    }
}

}  // namespace

UnfinishedFile::UnfinishedFile(std::string path, std::string name)
    : mPath(std::move(path)), mFile(File::openOutput(mPath, O_EXCL, std::move(name))) {
    exchange(nullptr, mPath.c_str());
}

UnfinishedFile::~UnfinishedFile() {
    if (!mIsKept) {
        unlink(mPath.c_str());
    }
    keep();
}

void UnfinishedFile::keep() {
    mIsKept = true;
    exchange(mPath.c_str(), nullptr);
}

void removeUnfinished() {
    for (auto const& path : gUnfinished) {
        if (char const* const name = path.load()) {
            unlink(name);
        }
    }
}

void removeUnfinishedOnSignals() {
    for (int const signal : std::array{SIGHUP, SIGINT, SIGTERM}) {
        if (std::signal(signal, removeAndEnd) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

}  // namespace zoomreplay
