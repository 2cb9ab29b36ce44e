// The sensors of a replay, as the page's data has them.
#pragma once

#include "optics/FieldOfView.h"
#include "scenario/json/Json.h"

namespace zoomreplay {

/// { master?, sensors: { id: { array?, unconfigured?, degrees?, modes: { mode: { size?, readout? }
/// } } } }
scenario::Json rigData(Rig const& rig);

}  // namespace zoomreplay
