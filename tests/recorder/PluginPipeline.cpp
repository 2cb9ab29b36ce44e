// A pipeline that is opened as a plugin, and calls until the very end of the process.
#include <cstdlib>

#include "IZoomOverrideMgr.h"

namespace {

void callOnce() {
    NSCam::Feature::IZoomOverrideMgr::getInstance()->isPortExist(0, 1);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void runPipeline() {
    std::atexit(callOnce);  // after what is made from now on was destroyed
    for (int i = 0; i < 2000; ++i) {
        callOnce();
    }
}
