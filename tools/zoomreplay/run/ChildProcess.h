// Work done in a process of its own.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "base/Messages.h"

namespace zoomreplay {

/// A copy of this process that does one thing. It reads nothing from standard input, what it writes
/// to its standard streams comes here, and it does not outlive this process.
class ChildProcess {
 public:
    using Work = std::function<ExitStatus()>;

    /// Starts it. No thread but the calling one may run. A UserError of the work is one of the
    /// things that the child says, and ExitStatus::BadInput.
    /// @throws UserError there can be no more processes or files.
    explicit ChildProcess(Work const& work);
    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;

    /// Ends a child that still runs.
    ~ChildProcess();

    /// For poll: readable when the child says something, and when it ends.
    int descriptor() const { return mPipe; }

    /// Takes in what the child says; waits for it when there is nothing. @return false when the
    /// child has ended.
    bool listen();

    /// The beginning of what the child has said.
    std::string const& said() const { return mSaid; }

    /// To be called when it has ended. @return its status as waitpid tells it.
    int status();

 private:
    [[noreturn]] static void run(Work const& work, int pipe, pid_t parent);

    pid_t mProcess = -1;
    int mPipe = -1;
    std::string mSaid;
};

}  // namespace zoomreplay
