// Reads command lines: the replay's, and those of the commands.
#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <optional>
#include <string>

#include "Messages.h"
#include "ZoomOverrideTypes.h"

namespace zoomreplay {

/// @param argv the program's or the command's name and what follows it.
/// @return how the run ends when app shows its help or version, or does not understand its
///     arguments; empty when it goes on.
std::optional<ExitStatus> parseArguments(CLI::App& app, int argc, char const* const* argv);

/// What an option can choose from that takes a zoom override mode: all but None.
std::map<std::string, NSCam::Feature::ZoomOverrideMode> overridingModesByName();

}  // namespace zoomreplay
