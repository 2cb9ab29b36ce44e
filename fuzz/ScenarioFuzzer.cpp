// The reader of zoomreplay's scenarios: any file is replayed or refused with a message, and every
// result line is JSON that the tool itself can read again.
#include <optional>
#include <string>
#include <string_view>

#include "FatalEnd.h"
#include "IZoomOverrideMgr.h"
#include "host/ContainerRegistry.h"
#include "host/LogCapture.h"
#include "host/LogSwitches.h"
#include "host/PropertyStore.h"
#include "host/SensorTable.h"
#include "replay/Library.h"
#include "replay/Operations.h"
#include "results/ResultWriter.h"
#include "scenario/json/Document.h"
#include "scenario/json/LineError.h"

namespace {

using namespace scenario;
using namespace zoomreplay;

void resetPlatform() {
    NSCam::Host::clearSensors();
    NSCam::Host::clearProperties();
    NSCam::Host::resetLogSwitches();
    NSCam::Host::captureLog(true);
    NSCam::Feature::IZoomOverrideMgr::getInstance()->initialize(
        NSCam::Feature::ZoomOverrideMode::None);
}

void replayLine(std::string_view line, Library& library) {
    Document document;
    Value const value(document.parse(line));
    Fields fields(value);
    std::string_view op;
    fields.required("op", op);
    Operation const& operation = findOperation(op);
    auto answer = operation.run(fields, library);
    if (!answer.has_value()) {
        return;
    }
    std::string result;
    appendResultLine(
        result, {1, {}, operation.name, std::move(*answer), true, NSCam::Host::takeCapturedLog()});
    parseObject(result);
}

void replay(std::string_view scenario) {
    Library library([](Input const&) {});
    while (!scenario.empty()) {
        auto const end = scenario.find('\n');
        auto const line = scenario.substr(0, end);
        scenario.remove_prefix(end == std::string_view::npos ? scenario.size() : end + 1);
        if (line.empty() || line.substr(0, 2) == "//") {
            continue;
        }
        try {
            replayLine(line, library);
        } catch (LineError const&) {
            // The tool would stop here; going on makes more of an input.
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    [[maybe_unused]] static bool const kIsSetUp = [] {
        fuzz::catchFatalConditions();
        return true;
    }();
    resetPlatform();
    fuzz::untilPromisedEnd(
        [&] { replay(std::string_view(reinterpret_cast<char const*>(data), size)); });
    return 0;
}
