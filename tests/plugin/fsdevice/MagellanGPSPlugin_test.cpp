// SPDX-License-Identifier: MIT
// The driver's identity, creation and debug level.

#include <plugin/fsdevice/MagellanGPSPlugin.h>
#include <support/ReceiverFolder.h>
#include <support/RecordingReceiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>

namespace magellan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST(MagellanGPSPlugin, IsCreatedOnlyForItsClass)
{
    const support::TestFolders none{{}};
    EXPECT_NE(MagellanGPSPlugin::getPluginForClass("GPSPlugIn"), nullptr);
    for (const auto* other : {"", "gpsplugin", "GPSPLUGIN", "GPSPlugIn ", " GPSPlugIn",
                              "GPSPlugIns", "GPSPlugI", "VeloranPlugIn"})
        EXPECT_EQ(MagellanGPSPlugin::getPluginForClass(other), nullptr) << other;
}

TEST(MagellanGPSPlugin, IsCreatedAnewEachTime)
{
    const support::TestFolders none{{}};
    const auto first = MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    const auto second = MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    EXPECT_NE(first, second);
    EXPECT_NE(first->gpsView(), second->gpsView());
}

TEST(MagellanGPSPlugin, IsCreatedWithoutAReceiverToo)
{
    const support::TestFolders none{{}};
    const auto driver = MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    ASSERT_NE(driver, nullptr);
    EXPECT_NE(driver->gpsView(), nullptr);
    EXPECT_FALSE(driver->isReady());
    EXPECT_THAT(driver->deviceList(), IsEmpty());
    EXPECT_EQ(driver->fsDevice(), std::nullopt);
    EXPECT_EQ(driver->securityURL(), std::nullopt);
    EXPECT_EQ(driver->debugLevel(), 0);
}

TEST(MagellanGPSPlugin, ReportsItsIdentity)
{
    const MagellanGPSPlugin driver;
    EXPECT_EQ(driver.className(), "MagellanGPSPlugin");
    EXPECT_EQ(driver.gpsName(), "Magellan");
    EXPECT_EQ(driver.gpsCapabilities(),
              "tracks,waypoints,routes,geocaches,sendtrk,sendwpt,sendrte,sendcache");
    EXPECT_THAT(driver.fileTypes(), Optional(ElementsAre("log", "rte", "upt", "gs")));
}

TEST(MagellanGPSPlugin, NeedsARefreshForVolumesOnly)
{
    const MagellanGPSPlugin driver;
    EXPECT_TRUE(driver.needsFileSystemRefresh());
    EXPECT_FALSE(driver.needsSerialRefresh());
}

TEST(MagellanGPSPlugin, NeedsNoUsbRefreshForAnyVendorAndProductAndLeavesThemUnchanged)
{
    const MagellanGPSPlugin driver;
    for (const std::int32_t id : {0, 1, 0x091E, -1, std::numeric_limits<std::int32_t>::max()}) {
        std::int32_t vendor = id;
        std::int32_t product = id;
        EXPECT_FALSE(driver.needsUSBRefreshOnVendor(&vendor, &product));
        EXPECT_EQ(vendor, id);
        EXPECT_EQ(product, id);
    }
    EXPECT_FALSE(driver.needsUSBRefreshOnVendor(nullptr, nullptr));
}

TEST(MagellanGPSPlugin, OffersNoLivePositionAndCancelsNothing)
{
    MagellanGPSPlugin driver;
    const auto status = std::make_shared<support::RecordingReceiver>();
    EXPECT_FALSE(driver.gpsRunPVT(status, {}));
    EXPECT_FALSE(driver.gpsStopPVT());
    driver.gpsCancel();
    EXPECT_THAT(status->calls(), IsEmpty());
}

TEST(MagellanGPSPlugin, ReturnsTheButtonAndTheUrlThatWereSet)
{
    MagellanGPSPlugin driver;
    const auto button = std::make_shared<gps::Button>("deviceButton");
    driver.setDeviceButton(button);
    EXPECT_EQ(driver.deviceButton(), button);
    driver.setSecurityURL(gps::SecurityScopedURL{"/media/GPS"});
    ASSERT_TRUE(driver.securityURL());
    EXPECT_EQ(driver.securityURL()->path(), "/media/GPS");
    driver.setSecurityURL(std::nullopt);
    EXPECT_FALSE(driver.securityURL());
}

TEST(MagellanGPSPlugin, ReturnsTheDeviceListThatWasSet)
{
    MagellanGPSPlugin driver;
    const gps::Array records{gps::Dictionary{{"location", "/a"}}};
    driver.setFsDeviceList(records);
    EXPECT_EQ(driver.fsDeviceList(), records);
    EXPECT_EQ(driver.deviceList(), records);
    EXPECT_EQ(driver.fsDevice(), std::nullopt);
}

} // namespace
} // namespace magellan
