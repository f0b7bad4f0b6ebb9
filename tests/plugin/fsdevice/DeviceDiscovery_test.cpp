// SPDX-License-Identifier: MIT
// Test folders as receivers: the list, the view, the selection, and access to a volume.

#include <plugin/fsdevice/MagellanGPSPlugin.h>
#include <support/AsNobody.h>
#include <support/LogCapture.h>
#include <support/ReceiverFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class DeviceDiscoveryTest : public testing::Test {
protected:
    /// Builds the driver's list from these folders.
    void find(gps::Array folders)
    {
        support::TestFolders::set(std::move(folders));
        driver_->initFSDeviceList();
    }

    /// Takes the read permission from a receiver's unit file.
    static void refuse(const support::ReceiverFolder& receiver)
    {
        std::filesystem::permissions(receiver.path("USBTRANS/UNIT_ID.DAT"),
                                     std::filesystem::perms::none);
    }

    static gps::Dictionary record(const support::ReceiverFolder& receiver, const char* name,
                                  bool authorized)
    {
        return {{"location", receiver.path()}, {"name", name}, {"authorized", authorized}};
    }

    [[nodiscard]] gps::PopUpButton& menu() const
    {
        return *driver_->gpsView()->find<gps::PopUpButton>("deviceListMenu");
    }
    [[nodiscard]] gps::Button& button() const { return *driver_->deviceButton(); }

    support::TestFolders folders_{{}};
    std::shared_ptr<MagellanGPSPlugin> driver_ = MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    support::ReceiverFolder first_;
    support::ReceiverFolder second_;
};

TEST_F(DeviceDiscoveryTest, WithoutAVolumeTheListIsEmptyAndPopUpAndButtonAreHidden)
{
    find({});
    EXPECT_THAT(driver_->deviceList(), IsEmpty());
    EXPECT_EQ(driver_->fsDevice(), std::nullopt);
    EXPECT_FALSE(driver_->isReady());
    EXPECT_TRUE(menu().isHidden());
    EXPECT_TRUE(button().isHidden());
    EXPECT_THAT(menu().items(), IsEmpty());
    EXPECT_EQ(menu().selected(), std::nullopt);
}

TEST_F(DeviceDiscoveryTest, OneAuthorizedDeviceIsSelectedAndReadyWithPopUpAndButtonHidden)
{
    first_.unitFile("12345");
    find({first_.path()});
    const auto device = record(first_, "Magellan device 12345", true);
    EXPECT_EQ(driver_->deviceList(), gps::Array{device});
    EXPECT_EQ(driver_->fsDevice(), device);
    EXPECT_EQ(driver_->fsDevice()->size(), 3U);
    EXPECT_TRUE(driver_->isReady());
    EXPECT_TRUE(menu().isHidden());
    EXPECT_TRUE(button().isHidden());
}

TEST_F(DeviceDiscoveryTest, OneDeviceWithoutPermissionIsUnauthorizedAndShowsOnlyTheButton)
{
    first_.unitFile("12345");
    refuse(first_);
    const support::AsNobody nobody;
    const support::LogCapture log;
    find({first_.path()});
    EXPECT_EQ(driver_->deviceList(),
              gps::Array{record(first_, "Unauthorized Magellan device", false)});
    EXPECT_FALSE(driver_->isReady());
    EXPECT_TRUE(menu().isHidden());
    EXPECT_FALSE(button().isHidden());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(DeviceDiscoveryTest, TwoDevicesTheFirstAuthorizedShowOnlyThePopUp)
{
    first_.unitFile("1");
    second_.unitFile("2");
    refuse(second_);
    const support::AsNobody nobody;
    find({first_.path(), second_.path()});
    EXPECT_FALSE(menu().isHidden());
    EXPECT_TRUE(button().isHidden());
    EXPECT_TRUE(driver_->isReady());
}

TEST_F(DeviceDiscoveryTest, TwoDevicesTheFirstUnauthorizedShowPopUpAndButton)
{
    first_.unitFile("1");
    second_.unitFile("2");
    refuse(first_);
    const support::AsNobody nobody;
    find({first_.path(), second_.path()});
    EXPECT_FALSE(menu().isHidden());
    EXPECT_FALSE(button().isHidden());
    EXPECT_FALSE(driver_->isReady());
}

TEST_F(DeviceDiscoveryTest, AnyOtherReadErrorIsLoggedAndTheDeviceCountsAsAuthorized)
{
    first_.folder().put("USBTRANS/UNIT_ID.DAT", "Serial Number=\xC3\xA9\r\n");
    second_.folder().makeFolder("USBTRANS/UNIT_ID.DAT");
    const support::LogCapture log;
    find({first_.path(), second_.path()});
    EXPECT_EQ(driver_->deviceList(),
              (gps::Array{record(first_, "Unauthorized Magellan device", true),
                          record(second_, "Unauthorized Magellan device", true)}));
    EXPECT_TRUE(driver_->isReady());
    EXPECT_TRUE(button().isHidden());
    EXPECT_THAT(log.lines(), ElementsAre(StartsWith("Error: "), StartsWith("Error: ")));
    ASSERT_THAT(log.errors(), SizeIs(2));
    EXPECT_EQ(log.errors().front().code(), 261);
    EXPECT_EQ(log.errors().back().code(), 256);
}

std::string nameOf(const gps::Value& device)
{
    return *device.as<gps::Dictionary>()->findString("name");
}

TEST_F(DeviceDiscoveryTest, ADeviceIsNamedAfterItsSerialNumber)
{
    for (const auto& [text, name] : std::vector<std::pair<std::string, std::string>>{
             {"Serial Number=12345\r\n", "Magellan device 12345"},
             {"Model=X\r\nSerial Number=7 8\r\n", "Magellan device 7 8"},
             {"Serial Number=\r\n", "Magellan device "},
             {"Serial Number = 12345\r\n", "Magellan device (null)"},
             {"serial number=12345\r\n", "Magellan device (null)"},
             {"Model=X\nSerial Number=12345\n", "Magellan device (null)"},
             {"Serial Number=1\nModel=X\n", "Magellan device 1\nModel=X\n"},
             {"", "Magellan device (null)"},
         }) {
        first_.folder().put("USBTRANS/UNIT_ID.DAT", text);
        find({first_.path()});
        ASSERT_THAT(driver_->deviceList(), SizeIs(1)) << text;
        EXPECT_EQ(nameOf(driver_->deviceList().front()), name) << text;
    }
}

TEST_F(DeviceDiscoveryTest,
       TestFoldersAreListedInOrderAlthoughTheyAreNotRemovableAndOthersAreLeftOut)
{
    first_.unitFile("1");
    second_.unitFile("2");
    const support::TemporaryFolder plain;
    find({second_.path(), plain.path(), "/nowhere/at/all", "", first_.path()});
    ASSERT_THAT(driver_->deviceList(), SizeIs(2));
    EXPECT_EQ(nameOf(driver_->deviceList().front()), "Magellan device 2");
    EXPECT_EQ(nameOf(driver_->deviceList().back()), "Magellan device 1");
}

TEST_F(DeviceDiscoveryTest, ARefreshFollowsChangesAndSelectsTheFirstDeviceAgain)
{
    first_.unitFile("1");
    second_.unitFile("2");
    find({first_.path(), second_.path()});
    menu().pick(1);
    EXPECT_EQ(driver_->fsDevice(), record(second_, "Magellan device 2", true));
    EXPECT_TRUE(driver_->refreshDeviceList());
    EXPECT_EQ(driver_->fsDevice(), record(first_, "Magellan device 1", true));
    EXPECT_EQ(menu().selected(), 0U);
    support::TestFolders::set({});
    EXPECT_FALSE(driver_->refreshDeviceList());
    EXPECT_THAT(driver_->deviceList(), IsEmpty());
    EXPECT_TRUE(menu().isHidden());
    EXPECT_TRUE(button().isHidden());
    EXPECT_THAT(menu().items(), IsEmpty());
}

TEST_F(DeviceDiscoveryTest, ThePopUpFollowsTheDevicesAndTheSelection)
{
    first_.unitFile("1");
    second_.unitFile("2");
    find({first_.path(), second_.path()});
    EXPECT_THAT(menu().items(), ElementsAre("Magellan device 1", "Magellan device 2"));
    EXPECT_EQ(menu().selected(), 0U);
    driver_->setFsDevice(record(second_, "Magellan device 2", true));
    EXPECT_EQ(menu().selected(), 1U);
    driver_->setFsDevice(std::nullopt);
    EXPECT_EQ(menu().selected(), std::nullopt);
    EXPECT_FALSE(driver_->isReady());
    driver_->setFsDevice(gps::Dictionary{{"location", "/elsewhere"}});
    EXPECT_EQ(menu().selected(), std::nullopt);
}

TEST_F(DeviceDiscoveryTest, PickingAnEntrySelectsThatDeviceAndItsAuthorizationShowsInTheButton)
{
    first_.unitFile("1");
    second_.unitFile("2");
    refuse(second_);
    const support::AsNobody nobody;
    find({first_.path(), second_.path()});
    menu().pick(1);
    EXPECT_EQ(driver_->fsDevice(), record(second_, "Unauthorized Magellan device", false));
    EXPECT_EQ(menu().selected(), 1U);
    EXPECT_FALSE(driver_->isReady());
    EXPECT_FALSE(button().isHidden());
    menu().pick(0);
    EXPECT_EQ(driver_->fsDevice(), record(first_, "Magellan device 1", true));
    EXPECT_TRUE(driver_->isReady());
    EXPECT_TRUE(button().isHidden());
    menu().pick(2);
    EXPECT_EQ(driver_->fsDevice(), record(first_, "Magellan device 1", true));
}

TEST_F(DeviceDiscoveryTest, PickingTheSecondOfTwoEqualDevicesSelectsTheSecond)
{
    first_.unitFile("1");
    find({first_.path(), first_.path()});
    ASSERT_EQ(driver_->fsDeviceList().front(), driver_->fsDeviceList().back());
    menu().pick(1);
    EXPECT_EQ(menu().selected(), 1U);
    menu().pick(0);
    EXPECT_EQ(menu().selected(), 0U);
}

TEST_F(DeviceDiscoveryTest, EveryAccessThatASearchOpensIsClosed)
{
    first_.unitFile("1");
    second_.folder().makeFolder("USBTRANS");
    find({first_.path(), second_.path(), "/nowhere"});
    EXPECT_THAT(driver_->fsDeviceList(), SizeIs(1));
    EXPECT_EQ(gps::GPSStorageAuthorization::openAccessCount(), 0U);
}

TEST_F(DeviceDiscoveryTest, TheButtonIsShownOnlyWhileAnUnauthorizedDeviceIsSelected)
{
    for (const auto& [device, hidden] :
         std::vector<std::pair<std::optional<gps::Dictionary>, bool>>{
             {std::nullopt, true},
             {gps::Dictionary{{"location", "/a"}, {"authorized", true}}, true},
             {gps::Dictionary{{"location", "/a"}, {"authorized", false}}, false},
             {gps::Dictionary{{"location", "/a"}}, false},
         }) {
        driver_->setFsDevice(device);
        EXPECT_EQ(button().isHidden(), hidden);
        EXPECT_EQ(driver_->isReady(), device.has_value() && hidden);
    }
}

TEST_F(DeviceDiscoveryTest, PressingTheButtonAsksForAccessAgainAndRefreshesTheList)
{
    first_.unitFile("1");
    refuse(first_);
    {
        const support::AsNobody nobody;
        find({first_.path()});
        ASSERT_FALSE(driver_->isReady());
    }
    // The user grants the permission.
    std::filesystem::permissions(first_.path("USBTRANS/UNIT_ID.DAT"), std::filesystem::perms{0644});
    button().press();
    EXPECT_EQ(driver_->fsDevice(), record(first_, "Magellan device 1", true));
    EXPECT_TRUE(driver_->isReady());
    EXPECT_TRUE(button().isHidden());
    ASSERT_TRUE(driver_->securityURL());
    EXPECT_EQ(driver_->securityURL()->path(), first_.path());
}

TEST_F(DeviceDiscoveryTest, AViewThatOutlivesTheDriverDoesNothing)
{
    first_.unitFile("1");
    second_.unitFile("2");
    find({first_.path(), second_.path()});
    const auto view = driver_->gpsView();
    auto* const menu = view->find<gps::PopUpButton>("deviceListMenu");
    auto* const button = view->find<gps::Button>("deviceButton");
    const std::weak_ptr<MagellanGPSPlugin> driver = driver_;
    driver_.reset();
    EXPECT_TRUE(driver.expired()); // the view does not keep it alive
    support::TestFolders::set({});
    menu->pick(1);
    button->press();
    EXPECT_THAT(menu->items(), SizeIs(2));
    EXPECT_EQ(menu->selected(), 1U);
    EXPECT_TRUE(button->isHidden());
}

TEST_F(DeviceDiscoveryTest, ADriverWithoutAViewFindsDevicesToo)
{
    first_.unitFile("1");
    support::TestFolders::set({first_.path()});
    MagellanGPSPlugin bare;
    EXPECT_TRUE(bare.refreshDeviceList());
    EXPECT_EQ(bare.fsDevice(), record(first_, "Magellan device 1", true));
}

TEST_F(DeviceDiscoveryTest, AccessIsOpenedOnTheSelectedDeviceAndItsUrlKeptUntilTheNextTime)
{
    driver_->setFsDevice(gps::Dictionary{{"location", "/media/GPS"}});
    driver_->startAuthorizedAccess();
    driver_->endAuthorizedAccess();
    ASSERT_TRUE(driver_->securityURL());
    EXPECT_EQ(driver_->securityURL()->path(), "/media/GPS");
    driver_->setFsDevice(std::nullopt);
    driver_->startAuthorizedAccess();
    driver_->endAuthorizedAccess();
    EXPECT_FALSE(driver_->securityURL());
}

TEST_F(DeviceDiscoveryTest, AUnitFileThatIsALinkCountsAndOneThatLeadsNowhereDoesNot)
{
    first_.folder().put("elsewhere", "Serial Number=9\r\n");
    first_.folder().makeFolder("USBTRANS");
    std::filesystem::create_symlink("../elsewhere", first_.path("USBTRANS/UNIT_ID.DAT"));
    second_.folder().makeFolder("USBTRANS");
    std::filesystem::create_symlink("../nowhere", second_.path("USBTRANS/UNIT_ID.DAT"));
    find({first_.path(), second_.path()});
    ASSERT_THAT(driver_->deviceList(), SizeIs(1));
    EXPECT_EQ(nameOf(driver_->deviceList().front()), "Magellan device 9");
}

} // namespace
} // namespace magellan
