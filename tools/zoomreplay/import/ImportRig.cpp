// The command line of import-rig.
#include "ImportRig.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "CameraChoice.h"
#include "CameraDump.h"
#include "RigText.h"
#include "base/Arguments.h"
#include "base/Output.h"

namespace zoomreplay {
namespace {

constexpr char const* kRigFooter = R"(With a phone connected:
  adb shell dumpsys media.camera > dump.txt
  zoomreplay import-rig dump.txt -o rig.jsonl

A bugreport, unpacked, does as well, and so do characteristics as JSON.

The phone prints the characteristics of each camera, also of those behind a
logical one. Sensor lines come out for all cameras; the first logical camera
that faces back is configured, or else the first camera that does. The master is
the first of its physical cameras with its focal length and physical size;
angles of view are computed from both. A camera that lacks something is left
out, and the reason told; where it belongs to the one to be configured, nothing
is written: choose with --cameras. A dump that is taken while the application
has the camera open also tells the sizes of its streams.

Then record a zoom: see zoomreplay import-watch --help)";

// No camera at all: the text may be another one.
void demandUsable(CameraDump const& dump, CameraStock const& stock, PhoneText const& text) {
    if (!stock.usable.empty()) {
        return;
    }
    bool const isDescribed = std::any_of(dump.cameras.begin(), dump.cameras.end(),
                                         [](auto const& camera) { return camera.hasTags; });
    if (isDescribed) {
        throw UserError("has no camera that can be used");
    }
    std::string const why = text.whyNothing();
    throw UserError(!why.empty() ? why
                    : dump.cameras.empty()
                        ? "has no characteristics of cameras; see zoomreplay import-rig --help"
                        : "has cameras, but not their characteristics; take it again as adb shell "
                          "or root");
}

void demandAll(CameraDump const& dump) {
    if (dump.described < dump.announced) {
        throw UserError("announces " + std::to_string(dump.announced) + " cameras, but has only " +
                        std::to_string(dump.described) +
                        "; take the dump again, or choose among those with --cameras");
    }
}

/// Null where the group's camera was not open.
OpenSession const* sessionOf(CameraDump const& dump, SensorGroup const& group) {
    auto const found =
        std::find_if(dump.sessions.begin(), dump.sessions.end(),
                     [&](auto const& session) { return session.cameraId == group.cameraId; });
    return found == dump.sessions.end() ? nullptr : &*found;
}

}  // namespace

ExitStatus importRig(int argc, char const* const* argv) {
    std::string dumpPath;
    std::string rigPath = "-";
    std::vector<std::string> cameraIds;
    std::optional<std::string> masterId;
    std::string angles = "size";
    RigOptions options;
    std::map<std::string, AngleSource> const sources{{"size", AngleSource::PhysicalSize},
                                                     {"intrinsics", AngleSource::Intrinsics}};
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
    app.add_option("--angles", angles, "Take angles of view from: size (the default), intrinsics")
        ->check(CLI::IsMember(sources))
        ->type_name("SOURCE");
    app.add_flag("--binned", options.isBinned,
                 "Give sensors a second mode, which joins 2x2 pixels");
    if (auto const status = parseArguments(app, argc, argv)) {
        return *status;
    }

    options.angles = sources.at(angles);

    PhoneText text(File::openInput(dumpPath));
    Output const output(rigPath);
    checkSeparate({&output}, {&text.file()});
    auto const dump = readCameraDump(text);
    std::string const place = text.file().name() + ": ";
    std::string rig;
    try {
        auto const stock = sortCameras(dump.cameras, cameraIds, options.angles);
        for (auto const& complaint : stock.complaints) {
            complain(place + complaint);
        }
        demandUsable(dump, stock, text);
        if (cameraIds.empty()) {
            demandAll(dump);
        }
        auto const group = groupSensors(stock, !cameraIds.empty(), masterId);
        rig = rigText(stock, group, sessionOf(dump, group), options);
    } catch (UserError const& e) {
        throw UserError(place + e.what());
    }
    Replacement replacement(output);
    replacement.file().write(rig);
    replacement.finish();
    return ExitStatus::Success;
}

}  // namespace zoomreplay
