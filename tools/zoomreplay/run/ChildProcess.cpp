#include "ChildProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <utility>

namespace zoomreplay {
namespace {

int waitFor(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

}  // namespace

ChildProcess::ChildProcess(Work const& work) {
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0) {
        throw systemError("cannot start a process", errno);
    }
    pid_t const parent = getpid();
    mProcess = fork();
    if (mProcess == 0) {
        run(work, pipe[1], parent);
    }
    int const error = errno;
    close(pipe[1]);
    if (mProcess < 0) {
        close(pipe[0]);
        throw systemError("cannot start a process", error);
    }
    mPipe = pipe[0];
}

// Leaves by exit, not by return: what waits on the stack is this process's, not the child's.
void ChildProcess::run(Work const& work, int pipe, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {
        std::raise(SIGTERM);  // it ended before it could be watched
    }
    int const nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    dup2(pipe, STDOUT_FILENO);
    dup2(pipe, STDERR_FILENO);
    closefrom(STDERR_FILENO + 1);  // the pipes of the others, which may be all that one may have
    auto status = ExitStatus::BadInput;
    try {
        status = work();
    } catch (std::exception const& e) {
        complain(e.what());
    }
    std::exit(static_cast<int>(status));
}

ChildProcess::~ChildProcess() {
    close(mPipe);
    if (mProcess > 0) {
        kill(mProcess, SIGTERM);
        waitFor(mProcess);
    }
}

bool ChildProcess::listen() {
    constexpr size_t kMostKept = size_t{16} << 10U;
    std::array<char, 4096> buffer{};
    ssize_t const count = ::read(mPipe, buffer.data(), buffer.size());
    if (count > 0 && mSaid.size() < kMostKept) {
        mSaid.append(buffer.data(), static_cast<size_t>(count));
    }
    return count > 0 || (count < 0 && errno == EINTR);
}

int ChildProcess::status() {
    return waitFor(std::exchange(mProcess, -1));
}

}  // namespace zoomreplay
