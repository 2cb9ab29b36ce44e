// All that the page shows of a request.
#pragma once

#include "PackedRow.h"
#include "recording/ReplayedRequest.h"

namespace zoomreplay {

/// page/details.js tells its fields. Crops, ratios and states are those of the result lines; angles
/// have two decimals.
PackedRow requestData(ReplayedRequest const& request);

}  // namespace zoomreplay
