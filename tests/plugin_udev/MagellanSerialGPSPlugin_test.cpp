// SPDX-License-Identifier: MIT
// The serial driver's ports and the start of its operations, on a mocked device tree that is empty
// except for what a test adds.

#include <gps/DictionaryHelpers.h>
#include <gps/GPSFileDevice.h>
#include <plugin/loader/MagellanGPSPluginLoader.h>
#include <plugin/serialdevice/MagellanSerialGPSPlugin.h>
#include <support/LogCapture.h>
#include <support/PseudoTerminal.h>
#include <support/RecordingReceiver.h>
#include <support/TestPorts.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include <platform_udev/Testbed.h>

namespace magellan {
namespace {

using support::TestPorts;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Makes the set-up accessible.
class OpenDriver : public MagellanSerialGPSPlugin {
public:
    using MagellanSerialGPSPlugin::setUpDictionaryForThreadingFromOptions;
};

const gps::Error kNoPort{
    "com.Orvane.GPSPlugin.ErrorDomain",
    -1,
    {{gps::kErrorDescriptionKey, "No location was selected for Magellan device"},
     {gps::kErrorSuggestionKey,
      "Please make sure your Magellan device is connected and turned on, and try again"}}};

class SerialDriver : public testing::Test {
protected:
    static std::shared_ptr<MagellanSerialGPSPlugin> make()
    {
        return MagellanSerialGPSPlugin::getPluginForClass("GPSPlugIn");
    }

    static std::string location(const std::optional<gps::Dictionary>& port)
    {
        return port ? *port->findString("location") : "";
    }

    support::Testbed testbed; // an empty machine
    TestPorts ports{{"/dev/one", "/dev/two"}};
    std::shared_ptr<support::RecordingReceiver> status =
        std::make_shared<support::RecordingReceiver>();
};

TEST_F(SerialDriver, IsCreatedOnlyForItsClass)
{
    EXPECT_NE(make(), nullptr);
    EXPECT_NE(make(), make());
    for (const auto* other : {"", "gpsplugin", "GPSPlugIn ", "GPSPlugI", "VeloranPlugIn"})
        EXPECT_EQ(MagellanSerialGPSPlugin::getPluginForClass(other), nullptr) << other;
}

TEST_F(SerialDriver, SearchReportsEveryPort)
{
    const auto locations = make()->searchedLocations();
    ASSERT_THAT(locations, SizeIs(2));
    EXPECT_EQ(locations.front().location, "/dev/one");
    EXPECT_EQ(locations.front().sort, "serial port");
    EXPECT_EQ(locations.front().verdict, gps::SearchedLocation::Verdict::kAccepted);
    EXPECT_EQ(locations.back().location, "/dev/two");
}

TEST_F(SerialDriver, IsOfferedOnlyWhileAPortExists)
{
    TestPorts::set({});
    EXPECT_EQ(make(), nullptr);
    TestPorts::set({"/dev/one"});
    EXPECT_NE(make(), nullptr);
}

TEST_F(SerialDriver, IsOfferedAfterTheDriverOfMountedReceivers)
{
    MagellanGPSPluginLoader loader;
    auto drivers = loader.piGetPlugInsForClass("GPSPlugIn");
    ASSERT_TRUE(drivers);
    EXPECT_EQ(drivers->nextObject()->className(), "MagellanGPSPlugin");
    EXPECT_EQ(drivers->nextObject()->className(), "MagellanSerialGPSPlugin");
    EXPECT_EQ(drivers->nextObject(), nullptr);
    TestPorts::set({});
    drivers = loader.piGetPlugInsForClass("GPSPlugIn");
    EXPECT_EQ(drivers->nextObject()->className(), "MagellanGPSPlugin");
    EXPECT_EQ(drivers->nextObject(), nullptr);
}

TEST_F(SerialDriver, ReportsItsIdentity)
{
    const auto driver = make();
    EXPECT_EQ(driver->gpsName(), "Magellan Serial");
    EXPECT_EQ(driver->gpsCapabilities(), "tracks,waypoints,routes,geocaches");
    EXPECT_EQ(driver->fileTypes(), std::nullopt);
    EXPECT_TRUE(driver->needsSerialRefresh());
    EXPECT_FALSE(driver->needsFileSystemRefresh());
    std::int32_t id = 7;
    EXPECT_FALSE(driver->needsUSBRefreshOnVendor(&id, nullptr));
    EXPECT_EQ(id, 7);
}

TEST_F(SerialDriver, HasNoFilesToOfferToAHost)
{
    const std::shared_ptr<gps::GPSPlugInProtocol> driver = make();
    EXPECT_EQ(std::dynamic_pointer_cast<gps::GPSFileDevice>(driver), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<gps::GPSDeviceSearch>(driver), nullptr);
}

TEST_F(SerialDriver, PressingTheButtonScansThePortsAgain)
{
    const auto driver = make();
    TestPorts::set({"/dev/three"});
    driver->gpsView()->find<gps::Button>("deviceButton")->press();
    EXPECT_THAT(driver->deviceList(), SizeIs(1));
    EXPECT_EQ(location(driver->serialPort()), "/dev/three");
}

TEST_F(SerialDriver, OffersNoLivePositionAndCannotBeCancelled)
{
    const auto driver = make();
    EXPECT_FALSE(driver->gpsRunPVT(status, {}));
    EXPECT_FALSE(driver->gpsStopPVT());
    driver->gpsCancel();
    EXPECT_THAT(status->calls(), IsEmpty());
}

TEST_F(SerialDriver, DoesNotScanBeforeTheFirstRefresh)
{
    const MagellanSerialGPSPlugin driver;
    EXPECT_FALSE(driver.isReady());
    EXPECT_THAT(driver.deviceList(), IsEmpty());
    EXPECT_EQ(driver.serialPort(), std::nullopt);
}

TEST_F(SerialDriver, ListsItsPortsAndSelectsTheFirst)
{
    const auto driver = make();
    EXPECT_THAT(driver->deviceList(), SizeIs(2));
    EXPECT_EQ(driver->deviceList(), driver->serialPortList());
    EXPECT_EQ(location(driver->serialPort()), "/dev/one");
}

TEST_F(SerialDriver, EveryRescanSelectsTheFirstPortAlthoughThePickedOneIsStillThere)
{
    const auto driver = make();
    driver->setSerialPort(gps::Dictionary{{"location", "/dev/two"}, {"name", "/dev/two"}});
    EXPECT_EQ(location(driver->serialPort()), "/dev/two");
    EXPECT_TRUE(driver->refreshDeviceList());
    EXPECT_EQ(location(driver->serialPort()), "/dev/one");
}

TEST_F(SerialDriver, ReadinessIsTheResultOfTheLastScan)
{
    const auto driver = make();
    TestPorts::set({});
    EXPECT_TRUE(driver->isReady());
    EXPECT_FALSE(driver->refreshDeviceList());
    EXPECT_FALSE(driver->isReady());
    TestPorts::set({"/dev/one"});
    EXPECT_FALSE(driver->isReady());
    EXPECT_TRUE(driver->refreshDeviceList());
    EXPECT_TRUE(driver->isReady());
}

TEST_F(SerialDriver, WithoutPortsTheListIsEmptyTheMenuHiddenAndNothingSelected)
{
    const auto driver = make();
    const auto* const menu = driver->gpsView()->find<gps::PopUpButton>("deviceListMenu");
    ASSERT_NE(menu, nullptr);
    EXPECT_FALSE(menu->isHidden());
    TestPorts::set({});
    EXPECT_THAT(driver->makeSerialPortList(), IsEmpty());
    EXPECT_TRUE(menu->isHidden());
    EXPECT_THAT(menu->items(), IsEmpty());
    EXPECT_EQ(driver->serialPort(), std::nullopt);
    TestPorts::set({"/dev/one"});
    driver->makeSerialPortList();
    EXPECT_FALSE(menu->isHidden());
}

TEST_F(SerialDriver, PickingAnEntryOfTheMenuSelectsThatPort)
{
    const auto driver = make();
    auto* const menu = driver->gpsView()->find<gps::PopUpButton>("deviceListMenu");
    EXPECT_THAT(menu->items(), ElementsAre("/dev/one", "/dev/two"));
    EXPECT_EQ(menu->selected(), 0U);
    menu->pick(1);
    EXPECT_EQ(location(driver->serialPort()), "/dev/two");
    EXPECT_EQ(menu->selected(), 1U);
}

TEST_F(SerialDriver, SelectingAPortShowsItInTheMenu)
{
    const auto driver = make();
    const auto* const menu = driver->gpsView()->find<gps::PopUpButton>("deviceListMenu");
    driver->setSerialPort(*driver->serialPortList()[1].as<gps::Dictionary>());
    EXPECT_EQ(menu->selected(), 1U);
    driver->setSerialPort(std::nullopt);
    EXPECT_EQ(menu->selected(), std::nullopt);
}

TEST_F(SerialDriver, TheWorkDictionaryIsACopyOfTheOptionsWithTheLocation)
{
    const auto driver = std::make_shared<OpenDriver>();
    driver->makeSerialPortList();
    const gps::Dictionary options{{"location", "elsewhere"}, {"tracks", true}};
    gps::Dictionary work;
    EXPECT_EQ(driver->setUpDictionaryForThreadingFromOptions(options, work), std::nullopt);
    EXPECT_EQ(work, (gps::Dictionary{{"location", "/dev/one"}, {"tracks", true}}));
    work.set("tracks", false);
    EXPECT_EQ(options, (gps::Dictionary{{"location", "elsewhere"}, {"tracks", true}}));
}

TEST_F(SerialDriver, WithoutASelectedPortNothingStarts)
{
    const auto driver = make();
    const support::LogCapture logged;
    driver->setSerialPort(std::nullopt);
    EXPECT_EQ(driver->gpsRunAcquire(status, {}), kNoPort);
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
    EXPECT_THAT(logged.lines(), IsEmpty());
}

TEST_F(SerialDriver, APortWithoutALocationIsNotASelection)
{
    const auto driver = make();
    for (const auto& record :
         {gps::Dictionary{}, gps::Dictionary{{"location", 7}}, gps::Dictionary{{"name", "x"}}}) {
        driver->setSerialPort(record);
        EXPECT_EQ(driver->gpsRunAcquire(status, {}), kNoPort);
    }
}

TEST_F(SerialDriver, IgnoresASourcePath)
{
    const auto driver = make();
    driver->setSerialPort(std::nullopt);
    EXPECT_EQ(driver->gpsRunAcquire(
                  status, {{"sourcePath", MAGELLAN_SOURCE_DIR "/samples/files/points.upt"}}),
              kNoPort);
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
}

TEST_F(SerialDriver, LogsASetUpErrorIfTheDebugLevelIsNotZero)
{
    const auto driver = make();
    const support::LogCapture logged;
    driver->setSerialPort(std::nullopt);
    (void)driver->gpsRunAcquire(status, {{"debug", 1}});
    EXPECT_THAT(logged.lines(), ElementsAre("MagellanSerialGPSPlugin: " + kNoPort.text()));
}

TEST_F(SerialDriver, AcquireSetsTheFrameworksDebugLevelAndSendDoesNot)
{
    const auto driver = make();
    driver->setSerialPort(std::nullopt);
    (void)driver->gpsRunAcquire(status, {{"debug", 3}});
    EXPECT_EQ(driver->debugLevel(), 3);
    EXPECT_EQ(GarminDebugLevel, 3);
    (void)driver->gpsRunSend(nullptr, status, {{"debug", 5}});
    EXPECT_EQ(driver->debugLevel(), 5);
    EXPECT_EQ(GarminDebugLevel, 3);
    (void)driver->gpsRunAcquire(status, {}); // even without the option
    EXPECT_EQ(GarminDebugLevel, 5);
    (void)driver->gpsRunAcquire(status, {{"debug", 0}});
    EXPECT_EQ(GarminDebugLevel, 0);
}

TEST_F(SerialDriver, ASendIsOneIdleReportFromAWorkerAndDoesNotOpenThePort)
{
    const support::PseudoTerminal port;
    TestPorts::set({port.path()});
    const auto driver = make();
    const gps::Dictionary data{{"waypoint", gps::Array{}}};
    EXPECT_EQ(driver->gpsRunSend(&data, status, {}), std::nullopt);
    ASSERT_TRUE(status->waitUntilIdle());
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
    EXPECT_THAT(status->threads(), testing::Not(testing::Contains(std::this_thread::get_id())));
    EXPECT_NE(port.settings().c_lflag & tcflag_t{ICANON},
              0U); // opening would have made it raw
}

TEST_F(SerialDriver, ASendWithoutDataEndsAtOnceEvenWithoutAPort)
{
    const auto driver = make();
    driver->setSerialPort(std::nullopt);
    EXPECT_EQ(driver->gpsRunSend(nullptr, status, {}), std::nullopt);
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
    EXPECT_THAT(status->threads(), ElementsAre(std::this_thread::get_id()));
}

TEST_F(SerialDriver, ASendWithDataButWithoutAPortIsAnError)
{
    const auto driver = make();
    driver->setSerialPort(std::nullopt);
    const gps::Dictionary data;
    EXPECT_EQ(driver->gpsRunSend(&data, status, {}), kNoPort);
    EXPECT_THAT(status->calls(), ElementsAre("gpsStateChange 0"));
}

TEST_F(SerialDriver, FindsAPortThatIsPluggedInThroughTheDeviceDatabase)
{
    TestPorts::set({});
    testbed.add("P: /devices/usb1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n\n"
                "P: /devices/usb1/1-4/1-4:1.0/ttyUSB0\nL: driver=../../drv/pl2303\nE: "
                "SUBSYSTEM=usb-serial\n\n"
                "P: /devices/usb1/1-4/1-4:1.0/ttyUSB0/tty/ttyUSB0\nN: ttyUSB0\nE: SUBSYSTEM=tty\n"
                "E: DEVNAME=/dev/ttyUSB0\nE: MAJOR=188\nE: MINOR=0\nA: dev=188:0\\n\n");
    const auto driver = make();
    ASSERT_NE(driver, nullptr);
    EXPECT_EQ(location(driver->serialPort()), "/dev/ttyUSB0");
}

} // namespace
} // namespace magellan
