#include "Why.h"

#include <limits>
#include <optional>
#include <string>

#include "StepPrinter.h"
#include "base/Arguments.h"
#include "replay/Replay.h"

namespace zoomreplay {
namespace {

constexpr char const* kFooter =
    R"(Each step is told with the rectangle after it, in the active array or in the
pixels of the sensor's mode (TG), and with the line that brought it.

Examples:
  zoomreplay why zoom.jsonl 12
  zoomreplay why zoom.jsonl 12 --sensor 2 --port 0x7001
  zoomreplay why zoom.jsonl 10-20

Exit status: 0 explained, 1 some steps do not end at the library's answer,
2 bad usage, file or line, 3 the library stopped the process.)";

struct Options {
    std::string scenario;
    std::string requests;
    std::optional<uint32_t> sensorId;
    std::optional<uint16_t> port;
};

ExitStatus explain(Options const& options) {
    CropChoice const choice{parseRequestRange("REQUEST", options.requests), options.sensorId,
                            options.port};
    LineReader scenario(File::openInput(options.scenario));
    File output = File::standardOutput();
    Progress progress(scenario, output);
    Explainer explainer;
    StepPrinter printer(output, explainer, choice);
    Replay(scenario, false, {&explainer, &printer}, progress).run();
    return printer.unexplained() > 0 ? ExitStatus::Different : ExitStatus::Success;
}

}  // namespace

ExitStatus why(int argc, char const* const* argv) {
    Options options;
    CLI::App app("Tells the steps that made each crop of a request.", "zoomreplay why");
    app.footer(kFooter);
    app.add_option("SCENARIO", options.scenario, "Scenario file, - for standard input")
        ->required()
        ->type_name("");
    app.add_option("REQUEST", options.requests, "Request number, or A-B for several")
        ->required()
        ->type_name("");
    app.add_option("--sensor", options.sensorId, "Only crops of this sensor")->type_name("ID");
    app.add_option("--port", options.port, "Only P1 crops of this port, such as 0x7001")
        ->type_name("PORT");
    auto const status = parseArguments(app, argc, argv);
    return status.has_value() ? *status : explain(options);
}

}  // namespace zoomreplay
