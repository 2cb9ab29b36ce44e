// Counts the letters by which two names differ.
#include "scenario/json/NearMiss.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <vector>

namespace scenario {
namespace {

// What two spellings of one name have in common.
std::string plain(std::string_view name) {
    std::string result;
    for (char const c : name) {
        if (c != '_' && c != '-') {
            result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return result;
}

// How many letters to insert, drop or change to make one of the other.
size_t distance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < b.size(); ++j) {
            size_t const change = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string_view nearMiss(std::string_view name, std::span<std::string_view const> choices) {
    constexpr size_t kLettersPerSlip = 3;
    constexpr size_t kShortestBeginning = 4;
    constexpr size_t kLongest = 40;  // of what can be a slip at all
    if (name.size() > kLongest) {
        return {};
    }

    std::string const mine = plain(name);
    std::string_view best;
    size_t fewest = kLongest;
    for (std::string_view const choice : choices) {
        std::string const theirs = plain(choice);
        size_t const slips = distance(mine, theirs);
        bool const isBeginning =
            mine.size() >= kShortestBeginning && theirs.compare(0, mine.size(), mine) == 0;
        bool const isNear = slips * kLettersPerSlip <= theirs.size() || isBeginning;
        if (isNear && slips < fewest) {
            best = choice;
            fewest = slips;
        }
    }
    return best;
}

std::string didYouMean(std::string_view name, std::span<std::string_view const> choices) {
    auto const choice = nearMiss(name, choices);
    return choice.empty() ? "" : "; did you mean " + std::string(choice) + '?';
}

}  // namespace scenario
