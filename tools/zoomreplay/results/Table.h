// Shows outcomes to people: a row for each crop query.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/LineWriter.h"
#include "base/Terminal.h"
#include "recording/RequestRange.h"
#include "steps/Explainer.h"

namespace zoomreplay {

/// As wide as a terminal, or 100 columns, and coloured on a terminal. An answer that was kept and a
/// crop that had to be corrected are marked. Where the log was captured, every outcome has a row,
/// with its log lines below.
class Table : public OutcomeConsumer {
 public:
    /// @param range the requests to show; unless it is all of them, what belongs to no request is
    ///     left out, too.
    /// @param explainer gets each outcome before the table; like file, it lives longer
    Table(File& file, RequestRange range, Explainer const& explainer)
        : mLines(file), mTerminal(Terminal::of(file)), mRange(range), mExplainer(explainer) {}

    /// What a phone observed has a row, too.
    void prepare(uint64_t line, Input const& input) override;

    void consume(Outcome const& outcome) override;
    void flush() override { mLines.flush(); }

    /// Tells when there was nothing to show.
    void finish() override;

 private:
    bool isShown(bool isFatal) const;
    void write(std::string_view text);

    LineWriter mLines;
    Terminal mTerminal;
    RequestRange mRange;
    Explainer const& mExplainer;
    std::optional<uint32_t> mRequest;  // that the line in hand is about
    bool mHasHeader = false;
};

}  // namespace zoomreplay
