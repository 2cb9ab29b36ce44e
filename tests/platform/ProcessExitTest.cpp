// The platform works until the very end of the process: modules that outlive main still call it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "DebugWrapper.h"
#include "HwTransHelper.h"
#include "ICamsysSensorInfoHelper.h"
#include "IGenericContainer.h"
#include "Properties.h"
#include "host/ContainerRegistry.h"
#include "host/LogCapture.h"
#include "host/PropertyStore.h"
#include "host/SensorTable.h"

namespace {

bool sIsEntryGone = false;

void fillPlatform() {
    NSCam::Host::captureLog(true);
    log_dbg_print("test", 0, "first");
    NSCam::Host::setProperty("vendor.debug.exit", 4);
    NSCam::Host::setSensor(0, {{0, NSCam::Host::SensorModeInfo{NSCam::MSize{4, 3}, {{}}}}});
    NSCam::IGenericContainer<std::shared_ptr<int>>::createWriter("exit", 3, 0)
        ->publish({nullptr, [](int*) { sIsEntryGone = true; }});
}

bool platformAnswers() {
    NSCam::MSize size;
    NSCamHW::simplifiedMatrix matrix{};
    log_dbg_print("test", 0, "still here");
    return NSCam::Host::takeCapturedLog().size() == 2 &&
           NSCam::Utils::Properties::property_get_int32("vendor.debug.exit", 0) == 4 &&
           NSCam::utility::ICamsysSensorInfoHelper::getInstance()->getSensorSize(0, 0, size) &&
           NSCamHW::HwTransHelper(0).getMatrixFromActive(0, matrix) &&
           NSCam::IGenericContainer<std::shared_ptr<int>>::createReader("exit", 3, 0)
               ->readNewest()
               .has_value() &&
           !sIsEntryGone;
}

// Tables that are destroyed still answer as a rule, but cannot be emptied once more.
void emptyPlatform() {
    NSCam::Host::clearProperties();
    NSCam::Host::clearSensors();
    NSCam::Host::dropContainers();
}

TEST(ProcessExitDeathTest, PlatformOutlivesStaticDestruction) {
    // What is registered first runs last, after the destructors of everything made since.
    auto const exitAfterUse = [] {
        std::atexit([] {
            bool const answers = platformAnswers();
            emptyPlatform();
            std::_Exit(answers ? 0 : 1);
        });
        fillPlatform();
        std::exit(2);
    };
    EXPECT_EXIT(exitAfterUse(), testing::ExitedWithCode(0), "");
}

}  // namespace
