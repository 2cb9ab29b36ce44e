// Copies by fork, with a pipe between.
#include "Copy.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <exception>
#include <utility>

#include "base/Messages.h"

namespace zoomreplay {
namespace {

constexpr int kCopyPatience = 30000;  // milliseconds
constexpr size_t kCopyChunk = size_t{64} << 10U;

[[noreturn]] void work(Copy::Work const& task, int pipe) {
    int status = 0;
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC),
         STDERR_FILENO);  // the session's user is told otherwise
    try {
        task("/proc/self/fd/" + std::to_string(pipe));
    } catch (std::exception const&) {
        status = 1;
    }
    _exit(status);
}

}  // namespace

Copy::Copy(Work const& work) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw systemError("cannot make a pipe", errno);
    }
    mProcess = fork();
    if (mProcess == 0) {
        close(ends[0]);
        zoomreplay::work(work, ends[1]);
    }
    int const error = errno;
    close(ends[1]);
    mPipe = ends[0];
    if (mProcess < 0) {
        close(mPipe);
        throw systemError("cannot copy the process", error);
    }
}

Copy::Copy(Copy&& other) noexcept
    : mProcess(std::exchange(other.mProcess, -1)), mPipe(std::exchange(other.mPipe, -1)) {}

Copy::~Copy() {
    if (mPipe >= 0) {
        close(mPipe);
    }
    if (mProcess > 0) {
        kill(mProcess, SIGKILL);
        waitpid(mProcess, nullptr, 0);
    }
}

std::optional<std::string> Copy::read() {
    pollfd event{mPipe, POLLIN, 0};
    if (poll(&event, 1, kCopyPatience) <= 0) {
        return std::nullopt;
    }
    std::string text(kCopyChunk, '\0');
    ssize_t const count = ::read(mPipe, text.data(), text.size());
    if (count <= 0) {
        return count == 0 ? last() : std::nullopt;
    }
    text.resize(static_cast<size_t>(count));
    return text;
}

// What has been written counts only where the work came to its end.
std::optional<std::string> Copy::last() {
    int status = 0;
    waitpid(std::exchange(mProcess, -1), &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? std::optional<std::string>("")
                                                         : std::nullopt;
}

}  // namespace zoomreplay
