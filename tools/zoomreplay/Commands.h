// What zoomreplay does: each command has a name and a command line of its own.
#pragma once

#include <string>
#include <string_view>

#include "base/Messages.h"

namespace zoomreplay {

struct Command {
    std::string_view name;
    std::string_view summary;

    /// @param argv the command's name and what follows it.
    /// @throws UserError
    ExitStatus (*run)(int argc, char const* const* argv);
};

/// Runs the command that the arguments begin with, or else a replay.
/// @param argv the program's name and what follows it.
/// @throws UserError
ExitStatus runCommand(int argc, char const* const* argv);

/// All commands that have a name, for the help: a line each.
std::string listCommands();

}  // namespace zoomreplay
