// Prints all that reports get to know of a scenario's requests.
#include <iostream>

#include "recording/Recording.h"
#include "replay/Replay.h"
#include "results/CellText.h"
#include "scenario/text/JsonText.h"

namespace zoomreplay::test {
namespace {

using scenario::jsonText;

template <typename T>
std::string orDash(std::optional<T> const& value) {
    return value.has_value() ? std::to_string(*value) : "-";
}

class Printer : public RequestConsumer {
 public:
    void see(ReplayedRequest const& request, Rig const& /*rig*/) override {
        mSeen += ' ' + std::to_string(request.requestNo) + ':' +
                 std::to_string(request.lines.size()) + '/' +
                 std::to_string(request.queries.size());
    }

    void take(ReplayedRequest const& request, Rig const& rig) override {
        std::cout << "request " << request.requestNo << ", index " << request.index << ", line "
                  << request.firstLine << ", " << request.begin << " to " << orDash(request.end)
                  << ", deposit " << orDash(request.depositLine)
                  << (request.isRepeating ? " repeating" : "") << ", done "
                  << orDash(request.doneLine) << ", mode " << static_cast<int>(request.mode)
                  << ", rig " << request.rig << " of " << rig.infos.size() << " lenses, modes "
                  << (request.data != nullptr ? jsonText(request.data->sensorModes) : "-") << '\n';
        if (auto const& seen = request.observed) {
            std::cout << "  observed " << seen->zoomRatio.value_or(0.0F) << ' '
                      << jsonText(seen->cropRegion.value_or(NSCam::MRect{})) << ' '
                      << seen->activePhysicalId.value_or("-") << '\n';
        }
        std::cout << "  lines";
        for (ReplayedLine const& line : request.lines) {
            std::cout << ' ' << line.line << ' ' << line.op;
        }
        std::cout << '\n';
        for (ReplayedQuery const& query : request.queries) {
            print(query);
        }
    }

    void finish(ReplaySummary const& replay) override {
        std::cout << "seen" << mSeen << '\n'
                  << replay.total << " requests, " << replay.rigs.size() << " rigs, " << replay.end
                  << " us\n";
        if (auto const& fatal = replay.fatal) {
            std::cout << "fatal: line " << fatal->line << ' ' << fatal->op << ", " << fatal->time
                      << " us, request " << orDash(fatal->request) << '\n';
        }
        std::cout.flush();
    }

 private:
    static void print(ReplayedQuery const& query) {
        std::cout << "  " << nameOf(query.stage) << " of line " << query.line << " at "
                  << query.time << ", sensor " << query.request.sensorId << ' '
                  << ratioText(query.request.zoomRatio) << (query.isManual ? " manual" : "")
                  << ", state " << static_cast<int>(query.state)
                  << (query.isCached ? " kept " : " ") << orDash(query.keptSince) << ", need "
                  << (query.need.has_value() ? jsonText(*query.need) : "-") << ", "
                  << query.reason.words.substr(0, 30)
                  << (query.trouble.empty() ? "" : ", " + query.trouble) << '\n';
        for (ReplayedCrop const& crop : query.crops) {
            print(crop);
        }
    }

    static void print(ReplayedCrop const& crop) {
        std::cout << "    kind " << static_cast<int>(crop.kind) << ", sensor " << crop.sensorId
                  << " mode " << crop.sensorMode << ", ports";
        for (uint16_t const port : crop.ports) {
            std::cout << ' ' << port;
        }
        std::cout << (crop.domain == Domain::Tg ? ", TG " : ", active ") << rectText(crop.crop)
                  << ", asked " << (crop.asked.has_value() ? rectText(*crop.asked) : "-")
                  << ", least " << (crop.minSize.has_value() ? jsonText(*crop.minSize) : "-");
        if (crop.view.has_value()) {
            std::cout << ", share " << crop.view->share;
        }
        if (crop.difference.has_value()) {
            std::cout << ", wider by " << crop.difference->across << ' ' << crop.difference->down;
        }
        std::cout << ", " << crop.steps.size() << " steps"
                  << (crop.isExplained ? "" : " to nowhere") << '\n';
    }

    std::string mSeen;
};

void printRequests(char const* path) {
    LineReader scenario(File::openInput(path));
    File output = File::standardOutput();
    Progress progress(scenario, output);
    Explainer explainer;
    Printer printer;
    Recording recording({}, explainer, {&printer});
    Replay(scenario, false, {&explainer, &recording}, progress).run();
}

}  // namespace
}  // namespace zoomreplay::test

int main(int /*argc*/, char** argv) {
    zoomreplay::test::printRequests(argv[1]);
    return 0;
}
