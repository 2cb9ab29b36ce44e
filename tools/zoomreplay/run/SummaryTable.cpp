#include "SummaryTable.h"

#include <algorithm>
#include <string>

#include "base/TerminalText.h"
#include "results/CellText.h"

namespace zoomreplay {

void SummaryTable::add(Record const& record, RecordResult const& result) {
    std::string text;
    if (mRows++ == 0) {
        text = "requests  overridden  corrected  exceptions  fatal  differences  result   record\n";
    }
    Counts const& counts = result.counts;
    text += padLeft(std::to_string(counts.requests), 8);
    text += padLeft(std::to_string(counts.overridden), 12);
    text += padLeft(std::to_string(counts.corrected), 11);
    text += padLeft(std::to_string(counts.exceptions), 12);
    text += padLeft(std::to_string(counts.fatal), 7);
    text += padLeft(counts.differences.has_value() ? std::to_string(*counts.differences) : "-", 13);

    bool const isAlarm = result.ending != Ending::Same && mTerminal.isColoured;
    text += isAlarm ? "  \x1b[31m" : "  ";
    text += padRight(nameOf(result.ending), 9);
    text += isAlarm ? "\x1b[0m" : "";
    text += terminalText(record.path, '?') + '\n';
    mFile.write(text);

    mWorst = std::max(mWorst, result.ending);
    ++mEndings.at(static_cast<size_t>(result.ending));
}

void SummaryTable::finish() {
    std::string text = std::to_string(mRows) + (mRows == 1 ? " record" : " records");
    char const* separator = ": ";
    for (size_t ending = 0; ending < mEndings.size(); ++ending) {
        if (mEndings.at(ending) > 0) {
            text += separator + std::to_string(mEndings.at(ending)) + ' ' +
                    nameOf(static_cast<Ending>(ending));
            separator = ", ";
        }
    }
    mFile.write(text + '\n');
}

}  // namespace zoomreplay
