// Writes a report: one page that shows a replay, request by request, and needs nothing beside it.
#pragma once

#include "base/File.h"
#include "recording/RequestRecord.h"

namespace zoomreplay {

/// @param scenario its name, as the page tells it. @throws UserError
void writeReport(File& file, std::vector<RequestRecord> const& requests, ReplayRecord const& replay,
                 bool isLogged, std::string const& scenario);

}  // namespace zoomreplay
