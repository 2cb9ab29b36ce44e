// Draws the progress line, and draws it rarely.
#include "Progress.h"

#include <unistd.h>

#include <cstdio>

#include "base/Terminal.h"

namespace zoomreplay {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 1s;
constexpr auto kInterval = 200ms;

}  // namespace

Progress::Progress(LineReader const& scenario, File const& output)
    : mScenario(scenario),
      mIsOn(isatty(STDERR_FILENO) != 0 && !isDumbTerminal() && !output.isTerminal()),
      mNext(mStart + kPatience) {}

void Progress::clear() {
    if (mIsShown) {
        std::fputs("\r\x1b[K", stderr);
        mIsShown = false;
    }
}

void Progress::update() {
    auto const now = Clock::now();
    if (now < mNext) {
        return;
    }
    mNext = now + kInterval;
    mIsShown = true;

    double const seconds = std::chrono::duration<double>(now - mStart).count();
    double const speed = static_cast<double>(mScenario.lineNumber()) / seconds;
    auto const size = mScenario.file().size();
    if (size.has_value() && *size > 0) {
        double const part = static_cast<double>(mScenario.bytesRead()) / static_cast<double>(*size);
        std::fprintf(stderr, "\r%3.0f %%  %.0f lines/s\x1b[K", 100.0 * part, speed);
    } else {
        std::fprintf(stderr, "\r%llu lines  %.0f lines/s\x1b[K",
                     static_cast<unsigned long long>(mScenario.lineNumber()), speed);
    }
}

}  // namespace zoomreplay
