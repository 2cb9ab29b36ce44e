#include "Commands.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "ImportRig.h"
#include "ImportWatch.h"

namespace zoomreplay {
namespace {

struct Command {
    std::string_view name;
    ExitStatus (*run)(int argc, char const* const* argv);
};

constexpr std::array kCommands{
    Command{"import-rig", importRig},
    Command{"import-watch", importWatch},
};

Command const* findCommand(int argc, char const* const* argv) {
    auto const* const found =
        std::find_if(kCommands.begin(), kCommands.end(),
                     [&](Command const& command) { return argc > 1 && command.name == argv[1]; });
    return found == kCommands.end() ? nullptr : found;
}

}  // namespace

bool isImportCommand(int argc, char const* const* argv) {
    return findCommand(argc, argv) != nullptr;
}

ExitStatus runImportCommand(int argc, char const* const* argv) {
    return findCommand(argc, argv)->run(argc, argv);
}

}  // namespace zoomreplay
