// The table of commands, and which of them a command line means.
#include "Commands.h"

#include <algorithm>
#include <array>

#include "ReplayCommand.h"
#include "import/ImportRig.h"
#include "import/ImportWatch.h"
#include "new/NewScenario.h"

namespace zoomreplay {
namespace {

constexpr std::array kCommands{
    Command{"new", "Write a first scenario to replay and change", newScenario},
    Command{"import-rig", "Make a phone's sensors into scenario lines", importRig},
    Command{"import-watch", "Make what an application asked into a scenario", importWatch},
};

}  // namespace

ExitStatus runCommand(int argc, char const* const* argv) {
    std::string_view const name = argc > 1 ? argv[1] : "";
    auto const* const command =
        std::find_if(kCommands.begin(), kCommands.end(),
                     [&](Command const& known) { return known.name == name; });
    return command == kCommands.end() ? replayCommand(argc, argv)
                                      : command->run(argc - 1, argv + 1);
}

std::string listCommands() {
    constexpr size_t kWidth = 22;
    std::string list;
    for (Command const& command : kCommands) {
        list.append("  ").append(command.name).append(kWidth - command.name.size(), ' ');
        list.append(command.summary).append("\n");
    }
    return list;
}

}  // namespace zoomreplay
