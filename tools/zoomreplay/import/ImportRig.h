// Turns what a phone says of its cameras into the sensor lines of a scenario.
#pragma once

#include "base/Messages.h"

namespace zoomreplay {

/// @param argv the command's name, import-rig, and what follows it.
/// @throws UserError as a replay does.
ExitStatus importRig(int argc, char const* const* argv);

}  // namespace zoomreplay
