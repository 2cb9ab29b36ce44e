#include "RecordReplay.h"

#include <algorithm>
#include <variant>
#include <vector>

#include "Records.h"
#include "recording/Recording.h"
#include "replay/Replay.h"
#include "results/Compare.h"
#include "steps/Explainer.h"

namespace zoomreplay {
namespace {

/// Counts what comes of the lines. Finishes behind the comparison, which counts at the end.
class LineCounter : public OutcomeConsumer {
 public:
    LineCounter(LineReader const& scenario, std::optional<Compare> const& compare, Tally& tally)
        : mScenario(scenario), mCompare(compare), mTally(tally) {}

    void begin(uint64_t line, LineTime const& /*time*/) override {
        mTally.line = line;
        mTally.bytesRead = mScenario.bytesRead();
    }

    void consume(Outcome const& outcome) override {
        mTally.counts.exceptions +=
            std::holds_alternative<ExceptionAnswer>(outcome.answer) ? 1U : 0U;
        mTally.counts.fatal += std::holds_alternative<FatalAnswer>(outcome.answer) ? 1U : 0U;
    }

    void finish() override {
        if (mCompare.has_value()) {
            mTally.counts.differences = mCompare->differences();
        }
    }

 private:
    LineReader const& mScenario;
    std::optional<Compare> const& mCompare;
    Tally& mTally;
};

bool overrides(ReplayedQuery const& query) {
    return query.state == QueryState::Overridden;
}

bool corrects(ReplayedQuery const& query) {
    return std::any_of(query.crops.begin(), query.crops.end(),
                       [](ReplayedCrop const& crop) { return crop.asked.has_value(); });
}

/// Counts the requests that are over.
class RequestCounter : public RequestConsumer {
 public:
    explicit RequestCounter(Tally& tally) : mTally(tally) {}

    void take(ReplayedRequest const& request, Rig const& /*rig*/) override {
        auto const hasAny = [&](auto const& isSo) {
            return std::any_of(request.queries.begin(), request.queries.end(), isSo) ? 1U : 0U;
        };
        mTally.counts.requests += 1;
        mTally.counts.overridden += hasAny(overrides);
        mTally.counts.corrected += hasAny(corrects);
    }

    void finish(ReplaySummary const& /*replay*/) override {}

 private:
    Tally& mTally;
};

std::optional<LineReader> openExpected(std::optional<std::string> const& expected,
                                       std::string const& path) {
    if (!expected.has_value()) {
        return std::nullopt;
    }
    try {
        return LineReader(File::openInput(*expected));
    } catch (UserError const& e) {
        complain(path + ": no expected results: " + e.what());
        return std::nullopt;
    }
}

}  // namespace

ExitStatus replayRecord(std::string const& path, std::optional<std::string> const& expected,
                        Tally& tally) {
    if (isPacked(path)) {
        throw UserError(path + ": is packed; only plain JSON Lines are replayed");
    }
    LineReader scenario(File::openInput(path));
    auto expectedLines = openExpected(expected, path);

    std::optional<Compare> compare;
    Explainer explainer;
    RequestCounter requests(tally);
    Recording recording(RequestRange{}, explainer, {&requests});
    LineCounter lines(scenario, compare, tally);
    std::vector<OutcomeConsumer*> consumers{&explainer, &recording};
    if (expectedLines.has_value()) {
        consumers.push_back(&compare.emplace(*expectedLines, path, Compare::Tell()));
    }
    consumers.push_back(&lines);

    Progress progress(scenario, scenario.file());
    try {
        Replay(scenario, false, consumers, progress).run();
    } catch (UserError const&) {  // what came before a bad line counts
        recording.finish();
        if (compare.has_value()) {
            compare->breakOff();
        }
        lines.finish();
        throw;
    }
    tally.isOver = true;
    if (expected.has_value() && !expectedLines.has_value()) {
        return ExitStatus::BadInput;
    }
    return tally.counts.differences.value_or(0) > 0 ? ExitStatus::Different : ExitStatus::Success;
}

}  // namespace zoomreplay
