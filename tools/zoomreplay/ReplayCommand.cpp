// The command line of a replay, and who gets what comes of it: table or results, comparison, report
// and trace.
#include "ReplayCommand.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Commands.h"
#include "base/Arguments.h"
#include "base/Output.h"
#include "jumps/JumpList.h"
#include "recording/Recording.h"
#include "replay/Replay.h"
#include "report/Report.h"
#include "results/Compare.h"
#include "results/DifferenceWriter.h"
#include "results/ResultWriter.h"
#include "results/Table.h"
#include "steps/Explainer.h"
#include "trace/Trace.h"

namespace zoomreplay {
namespace {

struct Options {
    std::string scenario;
    std::optional<std::string> results;
    std::optional<std::string> expected;
    std::optional<std::string> differences;
    std::optional<std::string> report;
    std::optional<std::string> trace;
    std::optional<std::string> requests;
    std::optional<size_t> limit;
    bool isLogged = false;
    bool hasJumps = false;
};

constexpr size_t kJumpsShown = 10;

constexpr char const* kBeforeCommands =
    "Commands, in place of SCENARIO, each with a --help of its own:\n";

constexpr char const* kExamples = R"(
Examples:
  zoomreplay new zoom.jsonl
  zoomreplay zoom.jsonl                      its crops as a table
  zoomreplay zoom.jsonl -o old.jsonl         its results, a JSON object a line
  zoomreplay zoom.jsonl --compare old.jsonl  what has changed since
  zoomreplay zoom.jsonl --report zoom.html   a page to look at
  zoomreplay zoom.jsonl --jumps              where the picture jumps
  zoomreplay why zoom.jsonl 2                what made the crops of request 2

Exit status: 0 replayed, 1 --compare found a difference, 2 bad usage, file or
line, 3 the library stopped the process.)";

/// What a replay writes to, all checked and nothing touched.
struct Outputs {
    Outputs(Options const& options, std::vector<File const*> const& inputs)
        : results(options.results.value_or("-")) {
        std::vector<Output const*> all{&results};
        auto const add = [&all](std::optional<Output>& output, auto const& path) {
            if (path.has_value()) {
                all.push_back(&output.emplace(*path));
            }
        };
        add(differences, options.differences);
        add(report, options.report);
        add(trace, options.trace);
        checkSeparate(all, inputs);
    }

    Output results;
    std::optional<Output> differences;
    std::optional<Output> report;
    std::optional<Output> trace;
};

/// The report, the trace and the jumps of a replay, where they are asked for. Report and trace take
/// their places when the replay is over.
class Pictures : public OutcomeConsumer {
 public:
    Pictures(Options const& options, Outputs const& outputs, RequestRange range,
             Explainer const& explainer, std::string const& scenario, File& terminal) {
        std::vector<RequestConsumer*> consumers;
        if (outputs.report.has_value()) {
            mReportFile.emplace(*outputs.report);
            consumers.push_back(&mReport.emplace(
                scenario, Report::Shown{options.isLogged, options.expected.has_value()}));
        }
        if (outputs.trace.has_value()) {
            File& file = mTraceFile.emplace(*outputs.trace).file();
            mConsumers.push_back(&mTrace.emplace(file, scenario, range, explainer));
        }
        if (options.hasJumps) {
            consumers.push_back(&mJumps.emplace(terminal, options.limit.value_or(kJumpsShown)));
        }
        if (!consumers.empty()) {
            mConsumers.push_back(&mRecording.emplace(range, explainer, std::move(consumers)));
        }
    }

    bool isEmpty() const { return mConsumers.empty(); }

    void take(Difference const& difference) {
        if (mReport.has_value()) {
            mReport->take(difference);
        }
    }

    void begin(uint64_t line, LineTime const& time) override {
        for (OutcomeConsumer* consumer : mConsumers) {
            consumer->begin(line, time);
        }
    }

    void prepare(uint64_t line, Input const& input) override {
        for (OutcomeConsumer* consumer : mConsumers) {
            consumer->prepare(line, input);
        }
    }

    void consume(Outcome const& outcome) override {
        for (OutcomeConsumer* consumer : mConsumers) {
            consumer->consume(outcome);
        }
    }

    /// Once: what could not be written is not tried again.
    void finish() override {
        if (std::exchange(mIsFinished, true)) {
            return;
        }
        for (OutcomeConsumer* consumer : mConsumers) {
            consumer->finish();
        }
        if (mReport.has_value()) {
            mReport->write(mReportFile->file());
        }
        for (auto* file : {&mReportFile, &mTraceFile}) {
            if (file->has_value()) {
                (*file)->finish();
            }
        }
    }

 private:
    std::optional<Replacement> mReportFile;
    std::optional<Replacement> mTraceFile;
    std::optional<Report> mReport;
    std::optional<Trace> mTrace;
    std::optional<JumpList> mJumps;
    std::optional<Recording> mRecording;
    std::vector<OutcomeConsumer*> mConsumers;
    bool mIsFinished = false;
};

void checkTogether(Options const& options) {
    if (options.scenario == "-" && options.expected == "-") {
        throw UserError("<stdin>: cannot be both SCENARIO and EXPECTED");
    }
    if (options.hasJumps && options.results == "-") {
        throw UserError("--jumps: standard output is for the results");
    }
    bool const isPictured = options.report || options.trace || options.hasJumps;
    if (options.requests.has_value() && options.results.has_value() && !isPictured) {
        throw UserError(
            "--requests: results are never limited; needs --report, --trace or --jumps");
    }
}

ExitStatus replay(Options const& options) {
    checkTogether(options);
    LineReader scenario(File::openInput(options.scenario));
    std::optional<LineReader> expected;
    std::vector<File const*> inputs{&scenario.file()};
    if (options.expected.has_value()) {
        expected.emplace(File::openInput(*options.expected));
        inputs.push_back(&expected->file());
    }
    RequestRange const range = options.requests.has_value()
                                   ? parseRequestRange("--requests", *options.requests)
                                   : RequestRange{};
    Outputs const outputs(options, inputs);

    File terminal = File::standardOutput();
    Explainer explainer;
    Pictures pictures(options, outputs, range, explainer, scenario.file().name(), terminal);
    File output = outputs.results.open();  // from here on, what it held is lost
    std::optional<File> differences;
    if (outputs.differences.has_value()) {
        differences.emplace(outputs.differences->open());
    }
    Progress progress(scenario, output);
    bool const isPictured = !pictures.isEmpty();
    if (isPictured || expected.has_value()) {
        output.outliveReader();
    }

    RangeCheck rangeCheck(range);
    std::vector<OutcomeConsumer*> consumers{&rangeCheck};
    std::unique_ptr<OutcomeConsumer> printer;
    if (options.results.has_value()) {
        printer = std::make_unique<ResultWriter>(output);
    } else if (!options.hasJumps) {
        printer = std::make_unique<Table>(output, range, explainer);
    }
    if (isPictured || !options.results.has_value()) {
        consumers.push_back(&explainer);
    }
    if (printer != nullptr) {
        consumers.push_back(printer.get());
    }
    std::optional<Compare> compare;
    if (expected.has_value()) {
        compare.emplace(*expected, scenario.file().name(), [&](Difference const& difference) {
            if (differences.has_value()) {
                writeDifference(*differences, difference);
            }
            pictures.take(difference);
        });
        consumers.push_back(&*compare);
    }
    consumers.push_back(&pictures);

    Replay runner(scenario, options.isLogged, consumers, progress);
    try {
        runner.run();
    } catch (UserError const&) {
        progress.clear();
        if (compare.has_value()) {
            compare->breakOff();
        }
        pictures.finish();  // what came before a bad line is worth a look
        throw;
    }
    return compare.has_value() && compare->differences() > 0 ? ExitStatus::Different
                                                             : ExitStatus::Success;
}

}  // namespace

ExitStatus replayCommand(int argc, char const* const* argv) {
    Options options;
    CLI::App app("Replays request traces through the zoom override library and shows its crops.",
                 "zoomreplay");
    app.footer(kBeforeCommands + listCommands() + kExamples);
    app.set_version_flag("--version", "zoomreplay " ZOOMREPLAY_VERSION);
    app.add_option("SCENARIO", options.scenario, "Scenario file, - for standard input")
        ->required()
        ->type_name("");
    app.add_option("-o,--output", options.results,
                   "Write results as JSON Lines, - for standard output")
        ->type_name("RESULTS");
    app.add_flag("--log", options.isLogged, "Show what the library logs");
    auto* const compare =
        app.add_option("--compare", options.expected, "Compare the results with earlier ones")
            ->type_name("EXPECTED");
    app.add_option("--differences", options.differences,
                   "Write all that --compare finds as JSON Lines")
        ->needs(compare)
        ->type_name("FILE");
    app.add_option("--report", options.report, "Write a page that shows the crops, for a browser")
        ->type_name("FILE.html");
    app.add_option("--trace", options.trace, "Write a trace, for a trace viewer")
        ->type_name("FILE.json");
    auto* const jumps =
        app.add_flag("--jumps", options.hasJumps, "List where the picture jumps, the worst first");
    app.add_option("--limit", options.limit, "How many jumps to list; 10 unless told otherwise")
        ->needs(jumps)
        ->type_name("COUNT");
    app.add_option("--requests", options.requests,
                   "Limit table, report, trace and jumps to these requests")
        ->type_name("A-B");
    auto const status = parseArguments(app, argc, argv);
    return status.has_value() ? *status : replay(options);
}

}  // namespace zoomreplay
