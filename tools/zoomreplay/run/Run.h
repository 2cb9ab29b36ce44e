// The command that replays many records.
#pragma once

#include "base/Messages.h"

namespace zoomreplay {

/// zoomreplay run: replays each record in a process of its own and sums up what came of it.
/// @return the worst of the records' statuses. @throws UserError
ExitStatus run(int argc, char const* const* argv);

}  // namespace zoomreplay
