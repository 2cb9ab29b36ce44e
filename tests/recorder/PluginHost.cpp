// Opens a pipeline, the libraries of which are its own.
#include <dlfcn.h>

int main(int /*argc*/, char** argv) {
    void* const plugin = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    void* const run = plugin == nullptr ? nullptr : dlsym(plugin, "runPipeline");
    if (run == nullptr) {
        return 1;
    }
    reinterpret_cast<void (*)()>(run)();
    return 0;
}
