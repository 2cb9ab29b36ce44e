// All that the page shows of a request.
#pragma once

#include "PackedRecord.h"
#include "recording/RequestRecord.h"

namespace zoomreplay {

/// page/data.js tells its fields. Crops, ratios and states are those of the result lines; angles
/// have two decimals.
PackedRecord requestData(RequestRecord const& request);

}  // namespace zoomreplay
