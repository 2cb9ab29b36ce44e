// What zoomreplay does besides replaying: each command has a name and a command line of its own.
#pragma once

#include <string>
#include <string_view>

#include "base/Messages.h"

namespace zoomreplay {

struct Command {
    std::string_view name;
    std::string_view summary;

    /// @param argv the command's name and what follows it.
    /// @throws UserError as a replay does.
    ExitStatus (*run)(int argc, char const* const* argv);
};

/// @return null when there is no such command.
Command const* findCommand(std::string_view name);

/// All commands for the help, a line each.
std::string listCommands();

}  // namespace zoomreplay
