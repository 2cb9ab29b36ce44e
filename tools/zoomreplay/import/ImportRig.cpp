#include "ImportRig.h"

#include <optional>
#include <string>
#include <vector>

#include "CameraChoice.h"
#include "CameraDump.h"
#include "RigText.h"
#include "base/Arguments.h"

namespace zoomreplay {
namespace {

constexpr char const* kRigFooter = R"(With a phone connected:
  adb shell dumpsys media.camera > dump.txt
  zoomreplay import-rig dump.txt -o rig.jsonl

The phone prints the characteristics of each camera, also of those behind a
logical one. Sensor lines come out for all cameras; the first logical camera is
configured, its main sensor as the master: the first of its physical cameras
with its focal length and physical size. Angles of view are computed from both.
A camera that lacks something is left out, and the reason told.

Then record a zoom: see zoomreplay import-watch --help)";

}  // namespace

ExitStatus importRig(int argc, char const* const* argv) {
    std::string dumpPath;
    std::string rigPath = "-";
    std::vector<std::string> cameraIds;
    std::optional<std::string> masterId;
    bool isBinned = false;
    CLI::App app("Makes the sensor lines of a scenario out of a phone's own description.",
                 "zoomreplay import-rig");
    app.footer(kRigFooter);
    app.add_option("DUMP", dumpPath, "What dumpsys media.camera printed, - for stdin")
        ->required()
        ->type_name("");
    app.add_option("-o,--output", rigPath, "Write the rig to a file instead of standard output")
        ->type_name("RIG");
    app.add_option("--cameras", cameraIds, "Take and configure these cameras only")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("ID[,ID]");
    app.add_option("--master", masterId, "Make this camera the master")->type_name("ID");
    app.add_flag("--binned", isBinned, "Give sensors a second mode, which joins 2x2 pixels");
    if (auto const status = parseArguments(app, argc, argv)) {
        return *status;
    }

    PhoneText dump(File::openInput(dumpPath));
    auto const cameras = readCameraDump(dump);
    std::string const place = dump.file().name() + ": ";
    std::string rig;
    try {
        auto const stock = sortCameras(cameras, cameraIds);
        for (auto const& complaint : stock.complaints) {
            complain(place + complaint);
        }
        if (stock.usable.empty()) {
            throw UserError(cameras.empty() ? "has no characteristics of cameras"
                                            : "has no camera that can be used");
        }
        rig = rigText(stock, groupSensors(stock, !cameraIds.empty(), masterId), isBinned);
    } catch (UserError const& e) {
        throw UserError(place + e.what());
    }
    std::vector<File const*> const inputs{&dump.file()};
    File::openOutput(rigPath, inputs).write(rig);
    return ExitStatus::Success;
}

}  // namespace zoomreplay
