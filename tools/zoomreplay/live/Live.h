// zoomreplay live: a replay that is looked at while it goes on.
#pragma once

#include "base/Messages.h"

namespace zoomreplay {

/// @param argv the command's name and what follows it.
/// @throws UserError
ExitStatus live(int argc, char const* const* argv);

}  // namespace zoomreplay
