// Writes a replay in the trace event format that the viewers of Chrome and Android open.
#pragma once

#include "base/File.h"
#include "recording/RequestRecord.h"

namespace zoomreplay {

/// Each request is an asynchronous pair from its deposit to its end; ratios and crop sizes are
/// counters; refusals, exceptions and the fatal condition are instants.
/// @param scenario its name, for the metadata. @throws UserError
void writeTrace(File& file, std::vector<RequestRecord> const& requests, ReplayRecord const& replay,
                std::string const& scenario);

}  // namespace zoomreplay
