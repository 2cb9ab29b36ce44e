// The data that a report's page shows.
#pragma once

#include <string>

#include "recording/Recording.h"

namespace zoomreplay {

/// One JSON object, safe to stand inside a page's script element: no "<", ASCII only. page/data.js
/// tells its fields. Crops, ratios and states are those of the result lines; angles have three
/// decimals.
std::string reportData(Recording const& recording, std::string const& scenario);

}  // namespace zoomreplay
