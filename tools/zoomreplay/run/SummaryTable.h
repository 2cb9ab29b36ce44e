// The replays of many records, a row each.
#pragma once

#include <array>
#include <cstddef>

#include "RecordResult.h"
#include "Records.h"
#include "base/File.h"
#include "base/Terminal.h"

namespace zoomreplay {

class SummaryTable {
 public:
    /// @param file outlives the table.
    explicit SummaryTable(File& file) : mFile(file), mTerminal(Terminal::of(file)) {}

    void add(Record const& record, RecordResult const& result);

    /// Tells how many ended how.
    void finish();

    /// Of all rows.
    Ending worst() const { return mWorst; }

 private:
    File& mFile;
    Terminal mTerminal;
    Ending mWorst = Ending::Same;
    size_t mRows = 0;
    std::array<size_t, static_cast<size_t>(Ending::Killed) + 1> mEndings{};
};

}  // namespace zoomreplay
