// Writes what --compare finds as JSON Lines.
#pragma once

#include "Compare.h"
#include "base/File.h"

namespace zoomreplay {

/// {"request": 12, "op": "getP1CropSetting", "fields": ["need.zoomRatio"], "expected": {...},
/// "actual":
/// {...}}: the fields that differ and both results, null for one that is missing. A line that names
/// no request has no "request".
void writeDifference(File& file, Difference const& difference);

}  // namespace zoomreplay
