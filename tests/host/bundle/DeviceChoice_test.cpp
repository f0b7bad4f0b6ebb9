// SPDX-License-Identifier: MIT

#include "host/bundle/DeviceChoice.h"

#include "host/FakeDriver.h"
#include "host/bundle/SerialPort.h"
#include "support/TemporaryFolder.h"

#include <platform/OrvUtils/SerialPorts.h>
#include <platform/System/UserDefaults.h>

#include <gmock/gmock.h>

#include <cstdint>
#include <filesystem>

namespace {

using host::chooseDevice;
using support::FakeDriver;
using testing::HasSubstr;

class DeviceChoice : public testing::Test {
protected:
    DeviceChoice() { disk_->setLocations({"/media/a", "/media/b"}); }
    ~DeviceChoice() override
    {
        gps::UserDefaults::standard().setForThisRun(host::kTestFoldersKey, {});
    }

    std::string refusalOf(const host::DeviceRequest& request)
    {
        const auto failure = chooseDevice(drivers_, request, chosen_);
        EXPECT_TRUE(failure);
        EXPECT_EQ(chosen_.driver, nullptr);
        return failure ? *failure->description() + "|" + *failure->suggestion() : "";
    }

    std::shared_ptr<FakeDriver> disk_ = std::make_shared<FakeDriver>("Some Disk");
    std::shared_ptr<FakeDriver> serial_ = std::make_shared<FakeDriver>("Some Serial");
    std::vector<host::Driver> drivers_{disk_, serial_};
    host::ChosenDevice chosen_;
};

TEST_F(DeviceChoice, NameIsInLowerCaseWithHyphensForSpaces)
{
    EXPECT_EQ(host::driverName(*disk_), "some-disk");
}

TEST_F(DeviceChoice, FirstReadyDriverIsChosenByDefault)
{
    disk_->ready = false;
    EXPECT_FALSE(chooseDevice(drivers_, {}, chosen_));
    EXPECT_EQ(chosen_.driver, serial_);
}

TEST_F(DeviceChoice, LocationIsThatOfTheSelectedDeviceByDefault)
{
    disk_->menu->select(1);
    EXPECT_FALSE(chooseDevice(drivers_, {}, chosen_));
    EXPECT_EQ(chosen_.location, "/media/b");
    disk_->setLocations({});
    EXPECT_FALSE(chooseDevice(drivers_, {}, chosen_));
    EXPECT_EQ(chosen_.location, "");
}

TEST_F(DeviceChoice, WithoutAReadyDriverTheErrorSaysWhatToTry)
{
    disk_->ready = serial_->ready = false;
    EXPECT_THAT(refusalOf({}), HasSubstr("No receiver is mounted|Connect a receiver"));
}

// Ports of a driver that is always ready, as that for serial ports is.
class SerialChoice : public DeviceChoice {
protected:
    SerialChoice()
    {
        disk_->ready = false;
        serial_->serial = true;
        serial_->setLocations({"/dev/ttyS0", "/dev/ttyS1"});
    }
    ~SerialChoice() override
    {
        gps::UserDefaults::standard().setForThisRun(gps::kTestPortsKey, {});
    }
};

TEST_F(SerialChoice, PortThatNobodyNamedIsNotTried)
{
    EXPECT_THAT(refusalOf({}), HasSubstr("No receiver is mounted"));
    EXPECT_EQ(serial_->picked, std::nullopt);
}

TEST_F(SerialChoice, UsbAdapterIsTried)
{
    serial_->devices[1].as<gps::Dictionary>()->set("vendorID", std::int32_t{0x067b});
    EXPECT_FALSE(chooseDevice(drivers_, {}, chosen_));
    EXPECT_EQ(chosen_.driver, serial_);
    EXPECT_EQ(serial_->picked, 1U);
}

TEST_F(SerialChoice, SelectedUsbAdapterStaysSelected)
{
    serial_->devices[0].as<gps::Dictionary>()->set("vendorID", std::int32_t{0x067b});
    EXPECT_FALSE(chooseDevice(drivers_, {}, chosen_));
    EXPECT_EQ(chosen_.location, "/dev/ttyS0");
    EXPECT_EQ(serial_->picked, std::nullopt);
}

TEST_F(SerialChoice, PortThatIsTiedToAReceiverIsTriedBeforeAUsbAdapter)
{
    serial_->devices[0].as<gps::Dictionary>()->set("vendorID", std::int32_t{0x067b});
    serial_->devices[1].as<gps::Dictionary>()->set("receiver", true);
    EXPECT_FALSE(chooseDevice(drivers_, {}, chosen_));
    EXPECT_EQ(chosen_.driver, serial_);
    EXPECT_EQ(serial_->picked, 1U);
}

TEST_F(SerialChoice, PortThatIsTiedToNoReceiverIsNotTried)
{
    serial_->devices[1].as<gps::Dictionary>()->set("receiver", false);
    EXPECT_THAT(refusalOf({}), HasSubstr("No receiver is mounted"));
}

TEST_F(SerialChoice, StoredPortIsTried)
{
    host::addSerialPort("/dev/ttyS1");
    EXPECT_FALSE(chooseDevice(drivers_, {}, chosen_));
    EXPECT_EQ(serial_->picked, 1U);
}

TEST_F(SerialChoice, NamedPortOrDriverIsTried)
{
    EXPECT_FALSE(chooseDevice(drivers_, {.driver = {}, .device = "/dev/ttyS0"}, chosen_));
    EXPECT_FALSE(chooseDevice(drivers_, {.driver = "some-serial", .device = {}}, chosen_));
    EXPECT_EQ(chosen_.driver, serial_);
}

TEST_F(SerialChoice, CommandThatNeedsFilesTriesNoPort)
{
    host::addSerialPort("/dev/ttyS1");
    host::DeviceRequest request{.driver = {}, .device = {}, .testFolders = {}, .needsFiles = true};
    EXPECT_THAT(refusalOf(request), HasSubstr("No receiver is mounted"));
    request.driver = "some-serial";
    EXPECT_FALSE(chooseDevice(drivers_, request, chosen_));
}

TEST_F(DeviceChoice, FileIsNotADevice)
{
    const support::TemporaryFolder folder;
    EXPECT_THAT(refusalOf({.driver = {}, .device = folder.put("a.log", "")}),
                HasSubstr("This is a file"));
}

TEST_F(DeviceChoice, WithoutADriverThereIsNothingToChoose)
{
    drivers_.clear();
    refusalOf({});
}

TEST_F(DeviceChoice, NamedDriverIsChosenEvenIfItIsNotReady)
{
    serial_->ready = false;
    EXPECT_FALSE(chooseDevice(drivers_, {.driver = "some-serial", .device = {}}, chosen_));
    EXPECT_EQ(chosen_.driver, serial_);
}

TEST_F(DeviceChoice, ErrorForAnUnknownDriverListsTheDrivers)
{
    EXPECT_THAT(refusalOf({.driver = "other", .device = {}}), HasSubstr("some-disk, some-serial"));
}

TEST_F(DeviceChoice, RequestedDeviceIsPickedInTheMenuByItsIndex)
{
    EXPECT_FALSE(chooseDevice(drivers_, {.driver = {}, .device = "/media/b"}, chosen_));
    EXPECT_EQ(chosen_.driver, disk_);
    EXPECT_EQ(chosen_.location, "/media/b");
    EXPECT_EQ(disk_->picked, 1U);
}

TEST_F(DeviceChoice, TrailingSlashMakesNoDifference)
{
    EXPECT_FALSE(chooseDevice(drivers_, {.driver = {}, .device = "/media/b//"}, chosen_));
    EXPECT_EQ(disk_->picked, 1U);
    EXPECT_EQ(disk_->refreshes, 0);
}

TEST_F(DeviceChoice, DriverThatListsTheDeviceIsChosen)
{
    serial_->setLocations({"/dev/ttyS9"});
    EXPECT_FALSE(chooseDevice(drivers_, {.driver = {}, .device = "/dev/ttyS9"}, chosen_));
    EXPECT_EQ(chosen_.driver, serial_);
}

TEST_F(DeviceChoice, ErrorForAnUnknownDeviceListsTheLocations)
{
    EXPECT_THAT(refusalOf({.driver = {}, .device = "/nowhere"}), HasSubstr("/media/a, /media/b"));
}

TEST_F(DeviceChoice, DeviceOfAnotherDriverThanTheNamedOneIsRejected)
{
    EXPECT_THAT(refusalOf({.driver = "some-serial", .device = "/media/a"}),
                HasSubstr("The requested driver finds no devices"));
}

TEST_F(DeviceChoice, FolderThatNoDriverListsBecomesATestFolderOnce)
{
    const support::TemporaryFolder folder;
    disk_->onRefresh = [&] {
        disk_->setLocations(
            *gps::UserDefaults::standard().stringArrayForKey(host::kTestFoldersKey));
    };
    const host::DeviceRequest request{
        .driver = {}, .device = folder.path() + "/", .testFolders = {"/first"}};
    EXPECT_FALSE(chooseDevice(drivers_, request, chosen_));
    EXPECT_EQ(disk_->refreshes, 1);
    EXPECT_EQ(disk_->picked, 1U);
    EXPECT_EQ(host::devicesOf(*disk_).back().location, folder.path());
}

TEST_F(DeviceChoice, ListedFolderUnderAnotherSpellingIsNotAddedAgain)
{
    const support::TemporaryFolder folder;
    disk_->setLocations({folder.path()});
    EXPECT_FALSE(chooseDevice(
        drivers_,
        {.driver = {},
         .device = folder.path() + "/../" + folder.path().substr(folder.path().rfind('/') + 1)},
        chosen_));
    EXPECT_EQ(disk_->refreshes, 0);
    EXPECT_EQ(disk_->picked, 0U);
}

TEST_F(DeviceChoice, LinkToADeviceIsThatDevice)
{
    const support::TemporaryFolder folder;
    const auto port = folder.put("port", "");
    std::filesystem::create_symlink(port, folder.path("by-id"));
    serial_->setLocations({folder.path("other"), port});
    EXPECT_FALSE(chooseDevice(drivers_, {.driver = {}, .device = folder.path("by-id")}, chosen_));
    EXPECT_EQ(chosen_.driver, serial_);
    EXPECT_EQ(chosen_.location, port) << "as the driver lists it";
    EXPECT_EQ(serial_->picked, 1U);
}

TEST_F(DeviceChoice, TwoMissingLocationsAreNotTheSame)
{
    EXPECT_THAT(refusalOf({.driver = {}, .device = "/media/c"}),
                HasSubstr("no device at this location"));
}

TEST_F(DeviceChoice, DeviceThatIsNotReadyIsRejectedUnlessItsDriverIsNamed)
{
    disk_->ready = false;
    EXPECT_THAT(refusalOf({.driver = {}, .device = "/media/a"}), HasSubstr("not ready"));
    EXPECT_FALSE(chooseDevice(drivers_, {.driver = "some-disk", .device = "/media/a"}, chosen_));
}

TEST_F(DeviceChoice, DevicesHaveTheValuesOfTheirRecords)
{
    disk_->devices.emplace_back(gps::Dictionary{{"location", "/media/c"}});
    const auto devices = host::devicesOf(*disk_);
    ASSERT_EQ(devices.size(), 3U);
    EXPECT_TRUE(devices[0].isSelected);
    EXPECT_FALSE(devices[1].isSelected);
    EXPECT_EQ(devices[0].name, "Device at /media/a");
    EXPECT_EQ(devices[0].authorized, true);
    EXPECT_EQ(devices[2].name, std::nullopt);
    EXPECT_EQ(devices[2].authorized, std::nullopt);
}

TEST_F(DeviceChoice, ImporterIsTheFirstDriverWithFileTypesEvenIfItIsNotReady)
{
    serial_->types = {{"log"}};
    serial_->ready = false;
    EXPECT_FALSE(host::chooseImporter(drivers_, std::nullopt, chosen_.driver));
    EXPECT_EQ(chosen_.driver, serial_);
}

TEST_F(DeviceChoice, NamedDriverThatCannotImportIsRejected)
{
    disk_->types = {{"log"}};
    EXPECT_TRUE(host::chooseImporter(drivers_, "some-serial", chosen_.driver));
    EXPECT_FALSE(host::chooseImporter(drivers_, "some-disk", chosen_.driver));
    EXPECT_EQ(chosen_.driver, disk_);
}

TEST_F(DeviceChoice, WithoutAnImporterThereIsNothingToChoose)
{
    EXPECT_TRUE(host::chooseImporter(drivers_, std::nullopt, chosen_.driver));
    EXPECT_TRUE(host::chooseImporter(drivers_, "other", chosen_.driver));
}

} // namespace
