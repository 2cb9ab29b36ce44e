// What the page shows of a result that is not the expected one.
#pragma once

#include "PackedRow.h"
#include "results/Compare.h"

namespace zoomreplay {

/// page/differences.js tells its fields.
PackedRow differenceData(Difference const& difference);

}  // namespace zoomreplay
