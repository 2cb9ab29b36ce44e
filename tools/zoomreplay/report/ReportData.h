// The data that a report's page shows.
#pragma once

#include <string>

#include "recording/RequestRecord.h"

namespace zoomreplay {

/// One JSON object, safe to stand inside a page's script element: no "<", ASCII only. page/data.js
/// tells its fields. Crops, ratios and states are those of the result lines; angles have three
/// decimals.
std::string reportData(std::vector<RequestRecord> const& requests, ReplayRecord const& replay,
                       bool isLogged, std::string const& scenario);

}  // namespace zoomreplay
