// Turns what an application asked of a phone's camera into a scenario.
#pragma once

#include "../Messages.h"

namespace zoomreplay {

/// The command import-watch; argv[1] is its name.
/// @throws UserError as a replay does.
ExitStatus importWatch(int argc, char const* const* argv);

}  // namespace zoomreplay
