// Runs a fuzzer's function on files and folders, where the compiler brings no fuzzer of its own.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size);

namespace {

void replay(std::filesystem::path const& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<char> const text{std::istreambuf_iterator<char>(file), {}};
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);  // the last name is that of the input that fails
    LLVMFuzzerTestOneInput(reinterpret_cast<uint8_t const*>(text.data()), text.size());
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        for (auto const& entry : std::filesystem::directory_iterator(argv[i])) {
            if (!entry.is_regular_file()) {
                continue;
            }
            replay(entry.path());
        }
    }
}
