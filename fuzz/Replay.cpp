// Runs a fuzzer's function where the compiler brings no fuzzer of its own: on random bytes, the
// same ones every time, and on the files of folders.
//
//     fuzz_NAME COUNT [FOLDER...]
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
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

void runRandom(unsigned long count) {
    std::mt19937 random(1);
    for (unsigned long i = 0; i < count; ++i) {
        std::vector<uint8_t> bytes(random() % 512);
        for (auto& byte : bytes) {
            byte = static_cast<uint8_t>(random());
        }
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
}

}  // namespace

int main(int argc, char** argv) {
    runRandom(argc > 1 ? std::stoul(argv[1]) : 0);
    for (int i = 2; i < argc; ++i) {
        for (auto const& entry : std::filesystem::directory_iterator(argv[i])) {
            if (entry.is_regular_file()) {
                replay(entry.path());
            }
        }
    }
}
