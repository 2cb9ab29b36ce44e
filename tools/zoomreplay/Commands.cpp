#include "Commands.h"

#include <algorithm>
#include <array>

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

Command const* findCommand(std::string_view name) {
    auto const* const found =
        std::find_if(kCommands.begin(), kCommands.end(),
                     [&](Command const& command) { return command.name == name; });
    return found == kCommands.end() ? nullptr : found;
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
