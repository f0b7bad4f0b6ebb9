// SPDX-License-Identifier: MIT
// What the loader offers on a machine without any serial port: the device tree is mocked and empty.

#include <gps/GPSPlugInProtocol.h>
#include <plugin/loader/MagellanGPSPluginLoader.h>
#include <support/BundleCopy.h>
#include <support/ReceiverFolder.h>
#include <support/TestPorts.h>

#include <gtest/gtest.h>

#include <platform_udev/Testbed.h>

namespace magellan {
namespace {

using support::BundleCopy;

class WithoutSerialPorts : public testing::Test {
protected:
    support::Testbed machine;
    support::TestPorts ports{{}};
    support::TestFolders folders{{}};
};

TEST_F(WithoutSerialPorts, OnlyTheDriverOfMountedReceiversIsOffered)
{
    MagellanGPSPluginLoader loader;
    auto drivers = loader.piGetPlugInsForClass("GPSPlugIn");
    ASSERT_TRUE(drivers);
    const auto driver = drivers->nextObject();
    ASSERT_NE(driver, nullptr);
    EXPECT_EQ(driver->className(), "MagellanGPSPlugin");
    EXPECT_FALSE(driver->isReady());
    EXPECT_EQ(drivers->nextObject(), nullptr);
    EXPECT_EQ(drivers->nextObject(), nullptr);
}

TEST_F(WithoutSerialPorts, WithoutAViewThereIsNoEnumerator)
{
    const BundleCopy bundle;
    bundle.remove("MagellanGPS.plist");
    EXPECT_FALSE(bundle.load().piGetPlugInsForClass("GPSPlugIn"));
}

TEST_F(WithoutSerialPorts, ABrokenViewCountsAsMissing)
{
    for (const auto* view :
         {"", "<plist version=\"1.0\"><dict>", "<plist version=\"1.0\"><array/></plist>",
          "<plist "
          "version=\"1.0\"><dict><key>class</key><string>Slider</string><key>identifier</"
          "key><string>gpsView</"
          "string></dict></plist>",
          "<plist "
          "version=\"1.0\"><dict><key>class</key><string>View</string><key>identifier</"
          "key><string>other</"
          "string></dict></plist>"}) {
        const BundleCopy bundle;
        bundle.put("MagellanGPS.plist", view);
        EXPECT_FALSE(bundle.load().piGetPlugInsForClass("GPSPlugIn")) << view;
    }
}

TEST_F(WithoutSerialPorts, ASerialDriverWithoutItsViewIsNotOffered)
{
    support::TestPorts::set({"/dev/one"});
    for (const bool broken : {false, true}) {
        const BundleCopy bundle;
        if (broken)
            bundle.put("MagellanSerialGPS.plist", "<plist version=\"1.0\"><dict>");
        else
            bundle.remove("MagellanSerialGPS.plist");
        auto drivers = bundle.load().piGetPlugInsForClass("GPSPlugIn");
        ASSERT_TRUE(drivers);
        EXPECT_EQ(drivers->nextObject()->className(), "MagellanGPSPlugin");
        EXPECT_EQ(drivers->nextObject(), nullptr);
    }
}

TEST_F(WithoutSerialPorts, OnlyTheSerialDriverIsOfferedIfTheOtherHasNoView)
{
    support::TestPorts::set({"/dev/one"});
    const BundleCopy bundle;
    bundle.remove("MagellanGPS.plist");
    auto drivers = bundle.load().piGetPlugInsForClass("GPSPlugIn");
    ASSERT_TRUE(drivers);
    EXPECT_EQ(drivers->nextObject()->className(), "MagellanSerialGPSPlugin");
    EXPECT_EQ(drivers->nextObject(), nullptr);
}

TEST_F(WithoutSerialPorts, AViewWithoutAPopUpIsAcceptedForAPort)
{
    support::TestPorts::set({"/dev/one"});
    const BundleCopy bundle;
    bundle.remove("MagellanGPS.plist");
    bundle.put("MagellanSerialGPS.plist", "<plist "
                                          "version=\"1.0\"><dict><key>class</key><string>View</"
                                          "string><key>identifier</key><string>gpsView</string>"
                                          "</dict></plist>");
    auto drivers = bundle.load().piGetPlugInsForClass("GPSPlugIn");
    ASSERT_TRUE(drivers);
    EXPECT_TRUE(drivers->nextObject()->refreshDeviceList());
}

} // namespace
} // namespace magellan
