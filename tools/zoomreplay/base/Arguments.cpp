// Reads command lines with CLI11, and words what is wrong with them.
#include "Arguments.h"

#include <sstream>
#include <string>
#include <vector>

#include "File.h"
#include "scenario/json/NearMiss.h"
#include "scenario/text/Modes.h"

namespace zoomreplay {

using namespace scenario;

namespace {

constexpr size_t kNameColumn = 24;  // leaves room for descriptions in a terminal of 80 columns

// CLI11 would tell all unexpected arguments at once, the last one first.
void complainOfExtra(CLI::App const& app) {
    std::string const extra = app.remaining().front();
    if (extra.front() != '-' || extra == "-") {
        complain(extra + ": one argument too many");
        return;
    }
    std::vector<std::string> names;
    for (CLI::Option const* option : app.get_options()) {
        for (auto const& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    std::vector<std::string_view> const choices(names.begin(), names.end());
    complain(extra + ": unknown option" + didYouMean(extra, choices));
}

}  // namespace

std::optional<ExitStatus> parseArguments(CLI::App& app, int argc, char const* const* argv) {
    app.get_formatter()->column_width(kNameColumn);
    try {
        app.parse(argc, argv);
        return std::nullopt;
    } catch (CLI::ExtrasError const&) {
        complainOfExtra(app);
    } catch (CLI::Success const& e) {  // help or version
        std::ostringstream text;
        app.exit(e, text, text);
        File::standardOutput().write(text.str());
        return ExitStatus::Success;
    } catch (CLI::ParseError const& e) {
        complain(e.what());
    }
    complain("Try " + app.get_name() + " --help.");
    return ExitStatus::BadInput;
}

std::map<std::string, NSCam::Feature::ZoomOverrideMode> overridingModesByName() {
    std::map<std::string, NSCam::Feature::ZoomOverrideMode> modes;
    for (auto const mode : overridingModes()) {
        modes.emplace(nameOf(mode), mode);
    }
    return modes;
}

}  // namespace zoomreplay
