// The command "new": a first scenario of one's own.
#pragma once

#include "base/Messages.h"

namespace zoomreplay {

/// @param argv the command's name and what follows it.
ExitStatus newScenario(int argc, char const* const* argv);

}  // namespace zoomreplay
