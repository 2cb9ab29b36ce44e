// What the library would answer if a customer published another ratio.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "recording/ReplayedRequest.h"

namespace zoomreplay {

/// A question that can be asked: the lines of a scenario that publish the ratio, and ask for a
/// copy of a request under a number of its own.
struct WhatIf {
    uint32_t requestNo;
    std::vector<std::string> lines;
};

/// @param request one of ExternalAPI mode, with its record and a query
WhatIf whatIf(ReplayedRequest const& request, uint32_t requestNo, float ratio);

/// Whether a request can be asked for once more.
bool canBeAsked(ReplayedRequest const& request);

/// The answer as the page has it: { lines, requests: { words, blocks } }.
std::string answerOf(WhatIf const& question, ReplayedRequest const& answered);

/// The answer where the library stopped the copy.
std::string fatalAnswerOf(WhatIf const& question);

}  // namespace zoomreplay
