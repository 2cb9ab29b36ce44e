// Turns what an application asked of a phone's camera into a scenario.
#pragma once

#include "base/Messages.h"

namespace zoomreplay {

/// @param argv the command's name, import-watch, and what follows it.
/// @throws UserError as a replay does.
ExitStatus importWatch(int argc, char const* const* argv);

}  // namespace zoomreplay
