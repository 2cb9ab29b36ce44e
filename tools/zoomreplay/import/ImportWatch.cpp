// The command line of import-watch.
#include "ImportWatch.h"

#include <optional>
#include <string>
#include <vector>

#include "CameraDump.h"
#include "RigFile.h"
#include "Session.h"
#include "WatchLog.h"
#include "base/Arguments.h"
#include "base/Output.h"

namespace zoomreplay {
namespace {

using NSCam::Feature::ZoomOverrideMode;

constexpr char const* kWatchFooter = R"(With a phone connected:
  adb shell cmd media.camera watch start -m android.control.zoomRatio,\
android.scaler.cropRegion,android.logicalMultiCamera.activePhysicalId
  adb shell cmd media.camera watch live -n 250 > zoom.log
zoom in the camera application, and end the second command with Ctrl-C. Or,
within a second or two afterwards, which is all that the phone keeps:
  adb shell cmd media.camera watch dump > zoom.log
  adb shell cmd media.camera watch stop
Then:
  zoomreplay import-watch zoom.log --rig rig.jsonl --mode ExternalAPI \
      -o zoom.jsonl
  zoomreplay zoom.jsonl
A pipe from watch live to import-watch - is written as it comes.

Each logged frame becomes a request with its zoom ratio. What overrides it is
the application's own zoom, one frame late (ByRequest: one frame early); edit
the lines to try another override. What the phone answered is kept beside it.)";

/// Opens the output when there is something to write, so that a log that has to be refused does not
/// cost an older file.
class Scenario : public WatchFollower {
 public:
    Scenario(Output const& output, PhoneRig const& rig, ZoomOverrideMode mode)
        : mOutput(output), mRig(rig), mMode(mode) {}

    void request(WatchedFrame const& frame) override { session().request(frame); }
    void observe(WatchedFrame const& frame) override { session().observe(frame); }
    void finish() override { session().finish(); }

    void flush() {
        if (mSession.has_value()) {
            mSession->flush();
        }
    }

    std::string complaint() const { return mSession.has_value() ? mSession->complaint() : ""; }

 private:
    Session& session() {
        if (!mSession.has_value()) {
            mFile.emplace(mOutput.open());
            mSession.emplace(*mFile, mRig, mMode);
        }
        return *mSession;
    }

    Output const& mOutput;
    PhoneRig const& mRig;
    ZoomOverrideMode mMode;
    std::optional<File> mFile;
    std::optional<Session> mSession;
};

/// The streams of the camera that was open when a dump was taken.
StreamTables readStreams(PhoneText& text, PhoneRig const& rig,
                         std::optional<std::string> const& camera) {
    auto const dump = readCameraDump(text);
    std::vector<OpenSession const*> open;
    std::string ids;
    for (auto const& session : dump.sessions) {
        if (!camera.has_value() || session.cameraId == cameraOf(*camera)) {
            open.push_back(&session);
        }
        ids += (ids.empty() ? "" : ", ") + session.cameraId;
    }
    std::string const place = text.file().name() + ": ";
    if (ids.empty()) {
        throw UserError(place +
                        "has no open camera with streams; take it while the camera "
                        "application is in use");
    }
    if (open.size() != 1) {
        throw UserError(place + "has streams of open cameras " + ids +
                        "; choose one with --camera");
    }
    std::vector<SensorOfCamera> sensors;
    for (auto const& sensor : rig.sensors) {
        sensors.push_back({sensor.id, std::to_string(sensor.id), sensor.mode});
    }
    auto tables = streamTablesOf(*open.front(), sensors);
    if (tables.streamSizes.empty()) {
        throw UserError(place + "has no stream of the rig's sensors");
    }
    return tables;
}

void import(PhoneText& text, std::optional<std::string> const& camera, Scenario& scenario) {
    std::string const place = text.file().name() + ":";
    bool const isLive = !text.file().size().has_value();
    WatchLog log(scenario, camera, isLive);
    try {
        while (auto const line = text.next()) {
            log.take(*line, text.lineNumber());
            if (isLive) {
                scenario.flush();
            }
        }
        if (auto const complaint = log.complaint(); !complaint.empty()) {
            complain(place + complaint);
        }
        if (isLive && log.isNewestFirst()) {
            complain(place + " is newest first, and so was written only at its end");
        }
        log.finish();
    } catch (UserError const& e) {
        std::string const why = text.whyNothing();
        throw UserError(place + ' ' + (why.empty() ? e.what() : why));
    }
    if (auto const complaint = scenario.complaint(); !complaint.empty()) {
        complain(place + ' ' + complaint);
    }
}

}  // namespace

ExitStatus importWatch(int argc, char const* const* argv) {
    auto const modes = overridingModesByName();
    std::string logPath;
    std::string rigPath;
    std::string scenarioPath = "-";
    std::string modeName;
    std::optional<std::string> camera;
    std::optional<std::string> sessionPath;
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
    app.add_option("--camera", camera, "Take the frames of this camera, or 0:APPLICATION of it")
        ->type_name("ID");
    app.add_option("--session", sessionPath, "Take stream sizes from a dumpsys of the open camera")
        ->type_name("DUMP");
    app.add_option("-o,--output", scenarioPath, "Write it to a file instead of standard output")
        ->type_name("SCENARIO");
    if (auto const status = parseArguments(app, argc, argv)) {
        return *status;
    }
    if (logPath == "-" && rigPath == "-") {
        throw UserError("<stdin>: cannot be both LOG and RIG");
    }

    LineReader rigLines(File::openInput(rigPath));
    auto rig = readRig(rigLines);
    PhoneText text(File::openInput(logPath));
    std::vector<File const*> inputs{&text.file(), &rigLines.file()};
    std::optional<PhoneText> dump;
    if (sessionPath.has_value()) {
        dump.emplace(File::openInput(*sessionPath));
        inputs.push_back(&dump->file());
        rig.streams = readStreams(*dump, rig, camera);
    }
    Output const output(scenarioPath);
    checkSeparate({&output}, inputs);
    Scenario scenario(output, rig, modes.at(modeName));
    import(text, camera, scenario);
    return ExitStatus::Success;
}

}  // namespace zoomreplay
