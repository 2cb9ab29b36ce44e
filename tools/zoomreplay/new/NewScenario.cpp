// The command line of new.
#include "NewScenario.h"

#include <string>

#include "FirstScenarios.h"
#include "base/Arguments.h"
#include "base/Output.h"

namespace zoomreplay {
namespace {

constexpr char const* kFooter =
    R"(Comments in the file say what each line does and what to change. A file that
exists already is left alone.

Examples:
  zoomreplay new zoom.jsonl
  zoomreplay zoom.jsonl
  zoomreplay new settings.jsonl --mode ByRequest)";

}  // namespace

ExitStatus newScenario(int argc, char const* const* argv) {
    auto const modes = overridingModesByName();
    std::string path;
    std::string mode = "InstantRequest";
    CLI::App app("Writes a first scenario, ready to replay and to change.", "zoomreplay new");
    app.footer(kFooter);
    app.add_option("FILE", path, "Where to write it, - for standard output")
        ->required()
        ->type_name("");
    app.add_option("--mode", mode, "The zoom override mode")
        ->check(CLI::IsMember(modes))
        ->type_name("MODE")
        ->capture_default_str();
    if (auto const status = parseArguments(app, argc, argv)) {
        return *status;
    }

    Output(path).create(firstScenarioOf(modes.at(mode)));
    return ExitStatus::Success;
}

}  // namespace zoomreplay
