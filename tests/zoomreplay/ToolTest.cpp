#include "ToolTest.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace zoomreplay::test {
namespace {

void redirect(int stream, char const* file, int flags) {
    int const descriptor = open(file, flags, 0600);
    if (descriptor < 0 || dup2(descriptor, stream) < 0) {
        _exit(126);
    }
}

}  // namespace

ToolTest::ToolTest() {
    std::string folder = testing::TempDir() + "zoomreplay-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    mFolder = folder;
}

ToolTest::~ToolTest() {
    std::filesystem::remove_all(mFolder);
}

void ToolTest::write(std::string const& name, std::string_view text) const {
    std::ofstream(mFolder / name, std::ios::binary) << text;
}

std::string ToolTest::read(std::string const& name) const {
    std::ostringstream text;
    text << std::ifstream(mFolder / name, std::ios::binary).rdbuf();
    return text.str();
}

std::map<std::string, std::string> ToolTest::readAll() const {
    std::map<std::string, std::string> files;
    for (auto const& entry : std::filesystem::directory_iterator(mFolder)) {
        std::string const name = entry.path().filename();
        if (name.front() != '.') {
            files[name] = read(name);
        }
    }
    return files;
}

ToolRun ToolTest::run(std::vector<std::string> const& arguments, std::string_view input,
                      std::function<void()> const& prepare) const {
    write(".in", input);
    std::vector<std::string> strings{ZOOMREPLAY_PATH};
    strings.insert(strings.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv(strings.size() + 1, nullptr);
    std::transform(strings.begin(), strings.end(), argv.begin(),
                   [](std::string& string) { return string.data(); });

    pid_t const child = fork();
    if (child == 0) {
        if (chdir(mFolder.c_str()) != 0) {
            _exit(126);
        }
        redirect(STDIN_FILENO, ".in", O_RDONLY);
        redirect(STDOUT_FILENO, ".out", O_WRONLY | O_CREAT | O_TRUNC);
        redirect(STDERR_FILENO, ".err", O_WRONLY | O_CREAT | O_TRUNC);
        if (prepare) {
            prepare();
        }
        execv(argv[0], argv.data());
        _exit(127);
    }

    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), read(".out"),
            read(".err")};
}

ToolRun ToolTest::replay(std::string_view scenario, std::vector<std::string> const& more) const {
    write("s.jsonl", scenario);
    std::vector<std::string> arguments{"s.jsonl", "-o", "-"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
}

}  // namespace zoomreplay::test
