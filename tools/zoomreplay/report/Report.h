// Writes a report: one page that shows a replay, request by request, and needs nothing beside it.
#pragma once

#include "base/File.h"
#include "recording/Recording.h"

namespace zoomreplay {

/// @param scenario its name, as the page tells it. @throws UserError
void writeReport(File& file, Recording const& recording, std::string const& scenario);

}  // namespace zoomreplay
