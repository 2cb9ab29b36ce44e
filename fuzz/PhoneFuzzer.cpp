// The readers of what phones print: any bytes become a rig or a session that the tool itself can
// read again, or are refused with a message.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/Messages.h"
#include "import/CameraChoice.h"
#include "import/CameraDump.h"
#include "import/RigFile.h"
#include "import/RigText.h"
#include "import/Session.h"
#include "scenario/text/Modes.h"

namespace {

using namespace zoomreplay;
using NSCam::Feature::ZoomOverrideMode;

/// A file in memory that has a path.
class MemoryFile {
 public:
    explicit MemoryFile(std::string_view text) : mDescriptor(memfd_create("fuzz", 0)) {
        if (mDescriptor < 0 ||
            write(mDescriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
            std::abort();
        }
    }
    MemoryFile(MemoryFile const&) = delete;
    MemoryFile& operator=(MemoryFile const&) = delete;
    ~MemoryFile() { close(mDescriptor); }

    File open() const { return File::openInput("/proc/self/fd/" + std::to_string(mDescriptor)); }

 private:
    int mDescriptor;
};

constexpr std::string_view kRig =
    R"({"op": "sensor", "id": 0, "modes": {"0": {"size": [4000, 3000], "window": [4, 4, 4000, 3000]}}}
{"op": "configSensorInfo", "sensorIds": [0], "sensorInfos": {"0": {"degreeH": 90, "degreeV": 60, "activeArray": [4, 4, 4000, 3000]}}}
)";

PhoneRig readText(std::string_view rig) {
    MemoryFile const file(rig);
    LineReader lines(file.open());
    return readRig(lines);
}

void importDump(MemoryFile const& text) {
    std::string rig;
    try {
        PhoneText dump(text.open());
        auto const cameras = readCameraDump(dump);
        auto const stock = sortCameras(cameras.cameras, {}, AngleSource::PhysicalSize);
        if (stock.usable.empty()) {
            return;
        }
        auto const group = groupSensors(stock, false, {});
        auto const* const session = cameras.sessions.empty() ? nullptr : &cameras.sessions.front();
        rig = rigText(stock, group, session, {true, AngleSource::PhysicalSize});
    } catch (UserError const&) {
        return;
    }
    readText(rig);  // what was written can be read
}

void importLog(MemoryFile const& text, ZoomOverrideMode mode, bool isLive) {
    static PhoneRig const kSensors = readText(kRig);
    static File theScenario = File::openOutput("/dev/null", 0, "/dev/null");
    try {
        PhoneText lines(text.open());
        Session session(theScenario, kSensors, mode);
        WatchLog log(session, {}, isLive);
        while (auto const line = lines.next()) {
            log.take(*line, lines.lineNumber());
        }
        log.finish();
    } catch (UserError const&) {
        return;
    }
}

void importLogs(MemoryFile const& text) {
    bool isLive = false;
    for (auto const mode : scenario::overridingModes()) {
        importLog(text, mode, isLive);
        isLive = !isLive;
    }
}

/// A command, and what its text becomes.
struct Importer {
    std::string_view command;
    void (*run)(MemoryFile const& text);
};

constexpr std::array kImporters{Importer{"import-rig", importDump},
                                Importer{"import-watch", importLogs}};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    MemoryFile const text(std::string_view(reinterpret_cast<char const*>(data), size));
    for (auto const& importer : kImporters) {
        importer.run(text);
    }
    return 0;
}
