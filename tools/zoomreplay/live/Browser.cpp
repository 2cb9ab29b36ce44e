#include "Browser.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>

#include "base/Messages.h"

namespace zoomreplay {

bool hasDesktop() {
    auto const isSet = [](char const* name) {
        char const* const value = std::getenv(name);
        return value != nullptr && *value != '\0';
    };
    return (isSet("DISPLAY") || isSet("WAYLAND_DISPLAY")) && isatty(STDOUT_FILENO) != 0;
}

// What the browser says is not for this terminal, and Ctrl-C here is not for the browser.
void openBrowser(std::string const& address) {
    posix_spawn_file_actions_t streams;
    posix_spawn_file_actions_init(&streams);
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        posix_spawn_file_actions_addopen(&streams, stream, "/dev/null", O_RDWR, 0);
    }
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSID);
    std::string program = "xdg-open";
    std::string argument = address;
    std::array<char*, 3> const arguments{program.data(), argument.data(), nullptr};
    pid_t process = 0;
    int const error =
        posix_spawnp(&process, program.c_str(), &streams, &attributes, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&streams);
    posix_spawnattr_destroy(&attributes);
    if (error != 0) {
        throw systemError("--open: cannot run xdg-open", error);
    }
}

}  // namespace zoomreplay
