// zoomreplay: replays recorded request traces through the zoom override library and shows its
// crops.
#include <csignal>
#include <exception>

#include "Commands.h"
#include "base/File.h"

int main(int argc, char** argv) {
    // A reader that goes away has seen enough, which is no error.
    std::signal(SIGPIPE, SIG_IGN);
    auto status = zoomreplay::ExitStatus::BadInput;
    try {
        status = zoomreplay::runCommand(argc, argv);
    } catch (zoomreplay::ClosedPipe const&) {
        status = zoomreplay::ExitStatus::Success;
    } catch (std::exception const& e) {
        zoomreplay::complain(e.what());
    }
    return static_cast<int>(status);
}
