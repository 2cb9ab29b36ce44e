// The requests that a report or a trace is about.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "base/Messages.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {

/// Request numbers, both ends included. All of them unless told otherwise.
struct RequestRange {
    uint32_t first = 0;
    uint32_t last = std::numeric_limits<uint32_t>::max();

    bool isAll() const { return first == 0 && last == std::numeric_limits<uint32_t>::max(); }
    bool contains(uint32_t requestNo) const { return first <= requestNo && requestNo <= last; }
};

/// Reads "A-B", or "A" for one request; all of them where there is nothing to read.
/// @throws UserError
inline RequestRange parseRequestRange(std::optional<std::string> const& option) {
    if (!option.has_value()) {
        return {};
    }
    std::string_view const text = *option;
    auto const number = [text](std::string_view part) {
        auto const value = scenario::parseNumber<uint32_t>(part);
        if (!value.has_value()) {
            throw UserError("--requests " + std::string(text) + ": must be A-B or A");
        }
        return *value;
    };
    auto const dash = text.find('-');
    RequestRange range;
    range.first = number(text.substr(0, dash));
    range.last = dash == std::string_view::npos ? range.first : number(text.substr(dash + 1));
    if (range.last < range.first) {
        throw UserError("--requests " + std::string(text) + ": ends before it begins");
    }
    return range;
}

}  // namespace zoomreplay
