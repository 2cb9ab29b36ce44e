// zoomreplay: replays recorded request traces through the zoom override library and shows its
// crops.
#include <exception>

#include "Commands.h"
#include "base/File.h"
#include "base/Process.h"

int main(int argc, char** argv) {
    zoomreplay::prepareProcess();
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
