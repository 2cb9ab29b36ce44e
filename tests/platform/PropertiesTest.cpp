// System properties.
#include <gtest/gtest.h>

#include "Properties.h"
#include "host/PropertyStore.h"

namespace {

using NSCam::Utils::Properties;

TEST(Properties, FallbackUntilSetAndAfterClear) {
    EXPECT_EQ(Properties::property_get_int32("vendor.debug.one", 5), 5);

    NSCam::Host::setProperty("vendor.debug.one", 1);
    NSCam::Host::setProperty("vendor.debug.one", -2);
    EXPECT_EQ(Properties::property_get_int32("vendor.debug.one", 5), -2);
    EXPECT_EQ(Properties::property_get_int32("vendor.debug.on", 5), 5);

    NSCam::Host::clearProperties();
    EXPECT_EQ(Properties::property_get_int32("vendor.debug.one", 5), 5);
}

}  // namespace
