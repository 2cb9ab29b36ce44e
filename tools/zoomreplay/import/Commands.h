// The commands that turn what a phone prints into scenario lines.
#pragma once

#include "../Messages.h"

namespace zoomreplay {

/// Whether a command line's first argument names one of them.
bool isImportCommand(int argc, char const* const* argv);

/// @throws UserError as a replay does.
ExitStatus runImportCommand(int argc, char const* const* argv);

}  // namespace zoomreplay
