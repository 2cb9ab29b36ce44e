// The table of commands, and which of them a command line means.
#include "Commands.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <vector>

#include "ReplayCommand.h"
#include "import/ImportRig.h"
#include "import/ImportWatch.h"
#ifdef ZOOMREPLAY_HAS_LIVE
#include "live/Live.h"
#endif
#include "new/NewScenario.h"
#include "run/Run.h"
#include "scenario/json/NearMiss.h"
#include "why/Why.h"

namespace zoomreplay {
namespace {

constexpr std::array kCommands{
    Command{"run", "Replay many records, each in a process of its own", run},
    Command{"why", "Tell the steps that made each crop of a request", why},
#ifdef ZOOMREPLAY_HAS_LIVE
    Command{"live", "Show a replay in a browser while it goes on", live},
#endif
    Command{"new", "Write a first scenario to replay and change", newScenario},
    Command{"import-rig", "Make a phone's sensors into scenario lines", importRig},
    Command{"import-watch", "Make what an application asked into a scenario", importWatch},
};

// A command's slip would be taken for a scenario that cannot be opened.
void refuseMisspelt(std::string_view name) {
    std::vector<std::string_view> names;
    names.reserve(kCommands.size());
    for (Command const& command : kCommands) {
        names.push_back(command.name);
    }
    std::string const hint = scenario::didYouMean(name, names);
    std::error_code error;
    if (!hint.empty() && !std::filesystem::exists(name, error)) {
        throw UserError(std::string(name) + ": no such command or scenario" + hint);
    }
}

}  // namespace

ExitStatus runCommand(int argc, char const* const* argv) {
    std::string_view const name = argc > 1 ? argv[1] : "";
    auto const* const command =
        std::find_if(kCommands.begin(), kCommands.end(),
                     [&](Command const& known) { return known.name == name; });
    if (command != kCommands.end()) {
        return command->run(argc - 1, argv + 1);
    }
    refuseMisspelt(name);
    return replayCommand(argc, argv);
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
