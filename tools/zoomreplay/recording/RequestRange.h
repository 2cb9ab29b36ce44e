// The requests that a report or a trace is about.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "base/Messages.h"
#include "replay/Outcome.h"
#include "scenario/text/ParseNumber.h"

namespace zoomreplay {

/// Request numbers, both ends included. All of them unless told otherwise.
struct RequestRange {
    uint32_t first = 0;
    uint32_t last = std::numeric_limits<uint32_t>::max();

    bool isAll() const { return first == 0 && last == std::numeric_limits<uint32_t>::max(); }
    bool contains(uint32_t requestNo) const { return first <= requestNo && requestNo <= last; }
};

/// Reads "A-B", or "A" for one request.
/// @param option that the text was given for
/// @throws UserError
inline RequestRange parseRequestRange(std::string_view option, std::string_view text) {
    std::string const name = std::string(option) + ' ' + std::string(text);
    auto const number = [&name](std::string_view part) {
        auto const value = scenario::parseNumber<uint32_t>(part);
        if (!value.has_value()) {
            throw UserError(name + ": must be A-B or A");
        }
        return *value;
    };
    auto const dash = text.find('-');
    RequestRange range;
    range.first = number(text.substr(0, dash));
    range.last = dash == std::string_view::npos ? range.first : number(text.substr(dash + 1));
    if (range.last < range.first) {
        throw UserError(name + ": ends before it begins");
    }
    return range;
}

/// Sees to it that a range names a request that there is.
class RangeCheck : public OutcomeConsumer {
 public:
    explicit RangeCheck(RequestRange range) : mRange(range), mIsMet(range.isAll()) {}

    void prepare(uint64_t /*line*/, Input const& input) override {
        auto const request = requestOf(input);
        mIsMet = mIsMet || (request.has_value() && mRange.contains(*request));
    }

    void consume(Outcome const& /*outcome*/) override {}

    /// @throws UserError no line named such a request
    void finish() override {
        if (!mIsMet) {
            throw UserError("--requests: the scenario has no such request");
        }
    }

 private:
    RequestRange mRange;
    bool mIsMet;
};

}  // namespace zoomreplay
