#include "Process.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "LineWriter.h"
#include "UnfinishedFile.h"

namespace zoomreplay {
namespace {

// A folder opened by its path alone can be neither read nor written.
void occupyStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) < 0 && errno == EBADF) {
            open("/", O_PATH);  // takes the lowest number that is free
        }
    }
}

}  // namespace

void prepareProcess() {
    occupyStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    removeUnfinishedOnSignals();
    saveLinesOnCrash();
}

}  // namespace zoomreplay
