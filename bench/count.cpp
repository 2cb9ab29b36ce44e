// Counts the instructions of each case and its floor. Runs under callgrind, with collection off at
// the start; each batch becomes a dump named "<case> <calls> <module|floor>".
#include <valgrind/callgrind.h>

#include <cstdio>
#include <exception>

#include "Case.h"

namespace {

using Bench::Case;
using Bench::Work;

void count(Work& work, void (Work::*batch)(), std::string const& name) {
    CALLGRIND_TOGGLE_COLLECT;
    (work.*batch)();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

/// @return whether the floor gave the same answers.
bool count(Case const& measured) {
    auto const work = measured.start();
    work->prepare();
    work->module();
    work->floor();
    work->finish();
    work->prepare();
    auto const name = measured.name + ' ' + std::to_string(measured.calls);
    count(*work, &Work::module, name + " module");
    count(*work, &Work::floor, name + " floor");
    bool const agree = work->agree();
    work->finish();
    return agree;
}

}  // namespace

int main() {
    try {
        for (auto const& measured : Bench::moduleCases()) {
            if (!count(measured)) {
                std::fprintf(stderr, "%s: the floor gives another answer\n", measured.name.c_str());
                return 1;
            }
        }
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
