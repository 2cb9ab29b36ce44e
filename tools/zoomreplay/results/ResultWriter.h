// Writes outcomes as the lines of a result file.
#pragma once

#include <string>

#include "base/LineWriter.h"
#include "replay/Outcome.h"

namespace zoomreplay {

/// Appends the result line of an outcome, without a line end.
void appendResultLine(std::string& out, Outcome const& outcome);

class ResultWriter : public OutcomeConsumer {
 public:
    /// @param file outlives the writer.
    explicit ResultWriter(File& file) : mLines(file) {}

    void consume(Outcome const& outcome) override;
    void flush() override { mLines.flush(); }
    void finish() override { flush(); }

 private:
    LineWriter mLines;
};

}  // namespace zoomreplay
