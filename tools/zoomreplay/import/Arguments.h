// The arguments of a command, which has options of its own.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>

#include "../Messages.h"

namespace zoomreplay {

/// Parses what follows the command's name, which is argv[1].
/// @return how the command ends when it shows its help, or does not understand its arguments; empty
///     when it goes on.
inline std::optional<ExitStatus> parseArguments(CLI::App& app, int argc, char const* const* argv) {
    try {
        app.parse(argc - 1, argv + 1);
        return std::nullopt;
    } catch (CLI::ParseError const& e) {
        return app.exit(e) == 0 ? ExitStatus::Success : ExitStatus::BadInput;
    }
}

}  // namespace zoomreplay
