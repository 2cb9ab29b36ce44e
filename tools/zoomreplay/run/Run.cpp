#include "Run.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "JUnitReport.h"
#include "RecordJobs.h"
#include "Records.h"
#include "RunProgress.h"
#include "SummaryTable.h"
#include "base/Arguments.h"
#include "base/Output.h"

namespace zoomreplay {
namespace {

namespace fs = std::filesystem;

constexpr char const* kRunFooter =
    R"(A folder stands for the *.jsonl files below it, - for a list on standard input:
a file a line, or each ended by a zero byte as find -print0 writes them.
Standard error tells what is wrong with a record; the others go on.

Examples:
  zoomreplay run records
  zoomreplay run records --compare-to expected --junit results.xml
  find records -name '*7.jsonl' | zoomreplay run - --jobs 4

Exit status, the worst of all records: 0 replayed, 1 --compare-to found a
difference, 2 bad usage, file or line, 3 the library stopped a process, or
something else did.)";

struct RunOptions {
    std::vector<std::string> paths;
    std::optional<size_t> jobs;
    std::optional<std::string> expected;
    std::optional<std::string> root;
    std::optional<std::string> junit;
};

void checkFolder(std::optional<std::string> const& folder) {
    std::error_code error;
    if (folder.has_value() && !fs::is_directory(*folder, error)) {
        throw systemError(*folder + ": cannot open",
                          error ? error.value() : static_cast<int>(std::errc::not_a_directory));
    }
}

// One input at a time is open: there may be more of them than a process may have.
void checkNotRead(std::vector<Output const*> const& outputs, fs::path const& path) {
    std::error_code error;
    if (fs::is_regular_file(path, error) && access(path.c_str(), R_OK) == 0) {
        File const input = File::openInput(path);
        checkSeparate(outputs, {&input});
    }
}

/// Where the records' results go, all checked and nothing touched.
struct RunOutputs {
    RunOutputs(RunOptions const& options, std::vector<Record> const& records) : rows("-") {
        std::vector<Output const*> all{&rows};
        if (options.junit.has_value()) {
            all.push_back(&junit.emplace(*options.junit));
        }
        checkSeparate(all, {});
        for (Record const& record : records) {
            checkNotRead(all, record.path);
            if (options.expected.has_value()) {
                checkNotRead(all, fs::path(*options.expected) / record.name);
            }
        }
    }

    Output rows;
    std::optional<Output> junit;
};

void tellResults(std::vector<std::string> const& results) {
    if (!results.empty()) {
        size_t const more = results.size() - 1;
        complain(results.front() + ": holds results, no record: left out" +
                 (more > 0 ? ", and " + std::to_string(more) + " more like it" : ""));
    }
}

ExitStatus replayRecords(RunOptions const& options) {
    checkFolder(options.expected);
    checkFolder(options.root);
    Records const records = findRecords({options.paths, options.root, options.expected});
    if (options.expected.has_value()) {
        checkNames(records.all);
    }
    RunOutputs const outputs(options, records.all);

    tellResults(records.results);
    File output = outputs.rows.open();
    if (options.junit.has_value()) {
        output.outliveReader();
    }
    SummaryTable table(output);
    JUnitReport report;
    RunProgress progress(records.all);
    RecordJobs jobs(records.all, options.expected);
    size_t const cores = std::max(1U, std::thread::hardware_concurrency());
    jobs.run(
        options.jobs.value_or(cores),
        [&](Record const& record, RecordResult const& result) {
            progress.clear();
            table.add(record, result);
            report.add(record, result);
            std::for_each(result.messages.begin(), result.messages.end(), complain);
        },
        [&](RecordJobs const& all) { progress.update(all.ended(), all.bytesRead()); });
    progress.clear();
    table.finish();

    if (outputs.junit.has_value()) {
        Replacement file(*outputs.junit);
        report.write(file.file());
        file.finish();
    }
    return statusOf(table.worst());
}

}  // namespace

ExitStatus run(int argc, char const* const* argv) {
    constexpr size_t kMostJobs = 1024;
    RunOptions options;
    CLI::App app("Replays many records, each in a process of its own.", "zoomreplay run");
    app.footer(kRunFooter);
    app.add_option("RECORD", options.paths, "Files, folders, or - for a list of them")
        ->required()
        ->type_name("...");
    app.add_option("--jobs", options.jobs, "How many at a time; all cores unless told otherwise")
        ->check(CLI::Range(size_t{1}, kMostJobs))
        ->type_name("COUNT");
    app.add_option("--compare-to", options.expected,
                   "Compare each with the results of the same name there")
        ->type_name("FOLDER");
    app.add_option("--root", options.root, "Name records by their paths below this folder")
        ->type_name("FOLDER");
    app.add_option("--junit", options.junit, "Write what came of each as JUnit XML, for CI systems")
        ->type_name("FILE.xml");
    auto const status = parseArguments(app, argc, argv);
    return status.has_value() ? *status : replayRecords(options);
}

}  // namespace zoomreplay
