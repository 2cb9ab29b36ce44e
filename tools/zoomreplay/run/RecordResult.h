// How the replay of one of many records ended.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Messages.h"

namespace zoomreplay {

/// From good to bad.
enum class Ending {
    Same,     ///< replayed, and equal to the expected results where there are any
    Differs,  ///< from the expected results
    Broken,   ///< a bad line, or a file that cannot be read
    Fatal,    ///< the library stopped the process
    Killed,   ///< the process ended otherwise
};

struct Counts {
    uint64_t requests = 0;
    uint64_t overridden = 0;              ///< requests with an answer that overrides
    uint64_t corrected = 0;               ///< requests with a crop that had to be corrected
    uint64_t exceptions = 0;              ///< calls
    uint64_t fatal = 0;                   ///< calls: at most one
    std::optional<uint64_t> differences;  ///< results; empty where nothing was compared
};

struct RecordResult {
    Ending ending = Ending::Same;
    Counts counts;
    double seconds = 0;                 ///< how long it took
    std::vector<std::string> messages;  ///< lines; may hold what a damaged file held
};

/// One word.
constexpr char const* nameOf(Ending ending) {
    switch (ending) {
        case Ending::Same:
            return "ok";
        case Ending::Differs:
            return "differs";
        case Ending::Broken:
            return "broken";
        case Ending::Fatal:
            return "fatal";
        default:
            return "killed";
    }
}

constexpr ExitStatus statusOf(Ending ending) {
    return ending == Ending::Killed ? ExitStatus::Fatal : static_cast<ExitStatus>(ending);
}

}  // namespace zoomreplay
