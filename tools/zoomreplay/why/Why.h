// The command that tells why crops are what they are.
#pragma once

#include "base/Messages.h"

namespace zoomreplay {

/// zoomreplay why: the steps that made each crop of a request. ExitStatus::Different when one of
/// them does not end at the library's answer. @throws UserError
ExitStatus why(int argc, char const* const* argv);

}  // namespace zoomreplay
