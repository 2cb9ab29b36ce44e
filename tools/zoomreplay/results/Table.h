// Shows outcomes to people: a row for each crop query.
#pragma once

#include <string>

#include "base/File.h"
#include "replay/Outcome.h"

namespace zoomreplay {

/// At most 100 columns wide. Coloured on a terminal. Where the log was captured, every outcome has
/// a row, with its log lines below.
class Table : public OutcomeConsumer {
 public:
    /// @param file outlives the table.
    explicit Table(File& file) : mFile(file), mIsColoured(file.isTerminal()) {}

    /// What a phone observed has a row, too.
    void prepare(uint64_t line, Input const& input) override;

    void consume(Outcome const& outcome) override;

    /// Tells when there was nothing to show.
    void finish() override;

 private:
    void write(std::string text);

    File& mFile;
    bool mIsColoured;
    bool mHasHeader = false;
};

}  // namespace zoomreplay
