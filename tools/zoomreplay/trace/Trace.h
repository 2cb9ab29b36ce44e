// Writes a replay in the trace event format that the viewers of Chrome and Android open.
#pragma once

#include "base/File.h"
#include "recording/Recording.h"

namespace zoomreplay {

/// Each request is an asynchronous pair from its deposit to its end; ratios and crop sizes are
/// counters; refusals, exceptions and the fatal condition are instants.
/// @param scenario its name, for the metadata. @throws UserError
void writeTrace(File& file, Recording const& recording, std::string const& scenario);

}  // namespace zoomreplay
