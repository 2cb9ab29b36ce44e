// Turns what a phone says of its cameras into the sensor lines of a scenario.
#pragma once

#include "../Messages.h"

namespace zoomreplay {

/// The command import-rig; argv[1] is its name.
/// @throws UserError as a replay does.
ExitStatus importRig(int argc, char const* const* argv);

}  // namespace zoomreplay
