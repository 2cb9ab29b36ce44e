#include "ImportWatch.h"

#include <map>
#include <string>
#include <vector>

#include "RigFile.h"
#include "Session.h"
#include "WatchLog.h"
#include "base/Arguments.h"

namespace zoomreplay {
namespace {

using NSCam::Feature::ZoomOverrideMode;

constexpr char const* kWatchFooter = R"(With a phone connected:
  adb shell cmd media.camera watch start \
      -m android.control.zoomRatio,android.scaler.cropRegion
  adb shell cmd media.camera watch live > zoom.log
zoom in the camera application, and end the second command with Ctrl-C. Or,
afterwards:
  adb shell cmd media.camera watch dump > zoom.log
  adb shell cmd media.camera watch stop
Then:
  zoomreplay import-watch zoom.log --rig rig.jsonl --mode ExternalAPI \
      -o zoom.jsonl
  zoomreplay zoom.jsonl

Each logged frame becomes a request with its zoom ratio. What overrides it is
the application's own zoom, one frame late (ByRequest: one frame early); edit
the lines to try another override.)";

}  // namespace

ExitStatus importWatch(int argc, char const* const* argv) {
    std::map<std::string, ZoomOverrideMode> const modes{
        {"ExternalAPI", ZoomOverrideMode::ExternalAPI},
        {"ByRequest", ZoomOverrideMode::ByRequest},
        {"InstantRequest", ZoomOverrideMode::InstantRequest}};
    std::string logPath;
    std::string rigPath;
    std::string scenarioPath = "-";
    std::string modeName;
    CLI::App app("Makes a scenario out of what an application asked of a phone's camera.",
                 "zoomreplay import-watch");
    app.footer(kWatchFooter);
    app.add_option("LOG", logPath, "What cmd media.camera watch printed, - for stdin")
        ->required()
        ->type_name("");
    app.add_option("--rig", rigPath, "The phone's sensors, from import-rig")
        ->required()
        ->type_name("RIG");
    app.add_option("--mode", modeName, "The zoom override mode to replay in")
        ->required()
        ->check(CLI::IsMember(modes))
        ->type_name("MODE");
    app.add_option("-o,--output", scenarioPath, "Write it to a file instead of standard output")
        ->type_name("SCENARIO");
    if (auto const status = parseArguments(app, argc, argv)) {
        return *status;
    }
    if (logPath == "-" && rigPath == "-") {
        throw UserError("<stdin>: cannot be both LOG and RIG");
    }

    PhoneText text(File::openInput(logPath));
    LineReader rigLines(File::openInput(rigPath));
    auto const log = readWatchLog(text);
    std::string const& name = text.file().name();
    if (log.unusableLines > 0) {
        complain(name + ":" + log.firstUnusable +
                 "; lines left out in all: " + std::to_string(log.unusableLines));
    }
    if (log.frames.empty()) {
        throw UserError(name + ": has no frame with a zoom ratio or a crop region");
    }
    auto const rig = readRig(rigLines);
    std::vector<File const*> const inputs{&text.file(), &rigLines.file()};
    File scenario = File::openOutput(scenarioPath, inputs);
    writeSession(scenario, rig, log, modes.at(modeName));
    return ExitStatus::Success;
}

}  // namespace zoomreplay
