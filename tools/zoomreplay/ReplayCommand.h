// What zoomreplay does when no command is named: it replays a scenario.
#pragma once

#include "base/Messages.h"

namespace zoomreplay {

/// @param argv the program's name and what follows it.
/// @throws UserError
ExitStatus replayCommand(int argc, char const* const* argv);

}  // namespace zoomreplay
