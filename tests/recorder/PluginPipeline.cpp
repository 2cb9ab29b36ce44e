// A pipeline that is opened as a plugin.
#include "IZoomOverrideMgr.h"

extern "C" __attribute__((visibility("default"))) void runPipeline() {
    auto const manager = NSCam::Feature::IZoomOverrideMgr::getInstance();
    for (int i = 0; i < 2000; ++i) {
        manager->isPortExist(0, 1);
    }
}
