// Part of coverage builds only: a death test's process would take to its grave which lines it ran.
#include <csignal>

extern "C" void __gcov_dump();  // NOLINT(bugprone-reserved-identifier): the compiler's name

namespace {

void dumpAndDie(int signal) {
    __gcov_dump();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

[[maybe_unused]] auto const kPrevious = std::signal(SIGABRT, dumpAndDie);

}  // namespace
