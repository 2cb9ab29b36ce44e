// Writes the rows of the plain table.
#include "PlainReport.h"

#include <array>
#include <cstdio>

#include "PageText.h"

namespace zoomreplay {
namespace {

constexpr size_t kShown = 100;

struct Finding {
    uint32_t mark;
    char const* words;
};
// The worst first.
constexpr std::array kFindings{
    Finding{kMarkFatal, "stopped the process"},
    Finding{kMarkException, "exception"},
    Finding{kMarkOutside, "crop outside of its sensor"},
    Finding{kMarkCorrected, "crop corrected"},
    Finding{kMarkStale, "kept answer of another sensor mode"},
    Finding{kMarkNeverDone, "never done"},
};

std::string cell(std::string const& text) {
    return "<td>" + inPage(text) + "</td>";
}

std::string ratioText(std::optional<float> ratio) {
    if (!ratio.has_value()) {
        return "-";
    }
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "%.4g", static_cast<double>(*ratio));
    return text.data();
}

std::string wordsOf(uint32_t marks) {
    std::string words;
    for (auto const& [mark, text] : kFindings) {
        if ((marks & mark) != 0) {
            words += (words.empty() ? "" : ", ") + std::string(text);
        }
    }
    return words;
}

std::string cropsOf(ReplayedRequest const& request) {
    std::string text;
    for (ReplayedQuery const& query : request.queries) {
        for (ReplayedCrop const& crop : query.crops) {
            auto const& [x, y, w, h] = crop.crop;
            text += (text.empty() ? "" : "; ") + std::string(nameOf(query.stage)) + " sensor " +
                    std::to_string(crop.sensorId) + " (" + std::to_string(x) + ", " +
                    std::to_string(y) + ")/" + std::to_string(w) + 'x' + std::to_string(h);
        }
    }
    return text;
}

}  // namespace

void PlainReport::take(ReplayedRequest const& request, Overview const& overview) {
    for (size_t i = 0; i < kMarks; ++i) {
        if ((overview.marks >> i & 1U) == 0) {
            continue;
        }
        Count& count = mCounts.at(i);
        if (count.requests++ == 0 || request.index < count.firstIndex) {
            count.firstIndex = request.index;
            count.firstNo = request.requestNo;
        }
    }
    if (request.index < kShown) {
        bool const isOverridden = (overview.marks & kMarkOverridden) != 0;
        mRows[request.index] = "<tr>" + cell(std::to_string(request.requestNo)) +
                               cell(ratioText(overview.asked)) +
                               cell(ratioText(overview.override)) +
                               cell(isOverridden ? "overridden" : "not overridden") +
                               cell(cropsOf(request)) + cell(wordsOf(overview.marks)) + "</tr>\n";
    }
}

std::string PlainReport::text(ReplaySummary const& replay) const {
    std::string out;
    if (auto const& fatal = replay.fatal) {
        out += "<p class=\"alarm\">The library stopped the process on line " +
               std::to_string(fatal->line) + ", " + std::string(fatal->op) + ": " +
               inPage(fatal->text) + "</p>\n";
    }
    out += "<ul>\n";
    for (auto const& [mark, words] : kFindings) {
        for (size_t i = 0; i < kMarks; ++i) {
            Count const& count = mCounts.at(i);
            if (mark == 1U << i && count.requests > 0) {
                out += "<li>" + std::string(words) + ": " + std::to_string(count.requests) +
                       (count.requests == 1 ? " request" : " requests") + ", first " +
                       std::to_string(count.firstNo) + "</li>\n";
            }
        }
    }
    out +=
        "</ul>\n<table><thead><tr><th>Request</th><th>Asked</th><th>Override</th>"
        "<th>Answer</th><th>Crops</th><th>Finding</th></tr></thead><tbody>\n";
    for (auto const& [index, row] : mRows) {
        out += row;
    }
    out += "</tbody></table>\n";
    if (replay.total > mRows.size()) {
        out += "<p>The first " + std::to_string(mRows.size()) + " of " +
               std::to_string(replay.total) + " requests.</p>\n";
    }
    return out;
}

}  // namespace zoomreplay
