// The one symbol that the recorder takes over from the module. Preloaded, it is found first; the
// module itself is the next that has it.
#include <dlfcn.h>

#include "RecordingManager.h"
#include "Report.h"

namespace NSCam::Feature {
namespace {

using GetInstance = std::shared_ptr<IZoomOverrideMgr> (*)();

constexpr char kModule[] = "libcam.zoomoverridemgr.so";
constexpr char kGetInstance[] = "_ZN5NSCam7Feature16IZoomOverrideMgr11getInstanceEv";

GetInstance findModule() {
    void* symbol = dlsym(RTLD_NEXT, kGetInstance);
    if (symbol == nullptr) {
        // A pipeline that was opened as a plugin has its libraries to itself.
        void* const module = dlopen(kModule, RTLD_NOW);
        symbol = module == nullptr ? nullptr : dlsym(module, kGetInstance);
    }
    return reinterpret_cast<GetInstance>(symbol);
}

std::shared_ptr<IZoomOverrideMgr> createRecordingManager() {
    auto const getInstance = findModule();
    if (getInstance == nullptr) {
        zoomrecorder::report(std::string(kModule) + ": not found, there is nothing to record");
        return nullptr;
    }
    // The properties are recorded before the module reads them.
    auto recorder =
        std::make_unique<zoomrecorder::CallRecorder>(zoomrecorder::settingsFromEnvironment());
    return zoomrecorder::makeRecordingManager(std::move(recorder), getInstance());
}

}  // namespace

std::shared_ptr<IZoomOverrideMgr> IZoomOverrideMgr::getInstance() {
    // Never destroyed: the process may call until its very end.
    static auto const& kInstance = *new auto(createRecordingManager());
    return kInstance;
}

}  // namespace NSCam::Feature
