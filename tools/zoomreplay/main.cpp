// zoomreplay: replays recorded request traces through the zoom override library and shows its
// crops.
#include <android/log.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <memory>
#include <optional>
#include <string>

#include "Compare.h"
#include "Replay.h"
#include "ResultWriter.h"
#include "Table.h"

namespace zoomreplay {
namespace {

struct Options {
    std::string scenario;
    std::optional<std::string> results;
    std::optional<std::string> expected;
    bool isLogged = false;
};

constexpr char const* kExample = R"(A scenario has one JSON object a line, such as
  {"op": "sensor", "id": 0, "modes": {"1": {"size": [4000, 3000]}}}
  {"op": "correctTgCropRegion", "sensorId": 0, "sensorMode": 1, "crop": [3500, 0, 1000, 750]}

Examples:
  zoomreplay pinch.jsonl                                shows the crops as a table
  zoomreplay pinch.jsonl -o - | tail -1                 the last result, as JSON
  zoomreplay pinch.jsonl -o new.jsonl --compare old.jsonl

Exit status: 0 replayed, 1 --compare found a difference, 2 bad usage, file or line,
3 the library stopped the process.)";

ExitStatus replay(Options const& options) {
    if (options.scenario == "-" && options.expected == "-") {
        throw UserError("<stdin>: cannot be both SCENARIO and EXPECTED");
    }
    LineReader scenario(File::openInput(options.scenario));
    std::optional<LineReader> expected;
    std::vector<File const*> inputs{&scenario.file()};
    if (options.expected.has_value()) {
        expected.emplace(File::openInput(*options.expected));
        inputs.push_back(&expected->file());
    }
    File output = File::openOutput(options.results.value_or("-"), inputs);
    Progress progress(scenario, output);

    std::unique_ptr<OutcomeConsumer> printer;
    if (options.results.has_value()) {
        printer = std::make_unique<ResultWriter>(output);
    } else {
        printer = std::make_unique<Table>(output);
    }
    std::vector<OutcomeConsumer*> consumers{printer.get()};
    std::optional<Compare> compare;
    if (expected.has_value()) {
        compare.emplace(*expected, scenario.file().name());
        consumers.push_back(&*compare);
    }

    Replay session(scenario, options.isLogged, consumers, progress);
    try {
        session.run();
    } catch (UserError const&) {
        progress.clear();
        throw;
    }
    return compare.has_value() && compare->differences() > 0 ? ExitStatus::Different
                                                             : ExitStatus::Success;
}

// A reader that goes away is an unwritable output like any other. liblog would repeat on standard
// error what --log is for.
void silenceProcess() {
    std::signal(SIGPIPE, SIG_IGN);
    __android_log_set_logger([](__android_logger_data const*, char const*) {});
}

ExitStatus run(int argc, char const* const* argv) {
    Options options;
    CLI::App app("Replays request traces through the zoom override library and shows its crops.",
                 "zoomreplay");
    app.footer(kExample);
    app.add_option("SCENARIO", options.scenario, "Scenario file, - for standard input")->required();
    app.add_option("-o,--output", options.results,
                   "Write results as JSON Lines instead of the table, - for standard output")
        ->type_name("RESULTS");
    app.add_flag("--log", options.isLogged, "Show what the library logs");
    app.add_option("--compare", options.expected, "Compare the results with an earlier result file")
        ->type_name("EXPECTED");
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& e) {
        return app.exit(e) == 0 ? ExitStatus::Success : ExitStatus::BadInput;
    }

    silenceProcess();
    return replay(options);
}

}  // namespace
}  // namespace zoomreplay

int main(int argc, char** argv) {
    auto status = zoomreplay::ExitStatus::BadInput;
    try {
        status = zoomreplay::run(argc, argv);
    } catch (std::exception const& e) {
        zoomreplay::complain(e.what());
    }
    return static_cast<int>(status);
}
