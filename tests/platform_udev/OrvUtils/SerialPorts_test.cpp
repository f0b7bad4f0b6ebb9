// SPDX-License-Identifier: MIT
// The list of ports, through the real device database.

#include "../Testbed.h"

#include <platform/OrvUtils/SerialPorts.h>
#include <platform/System/DeviceMonitor.h>
#include <platform/System/UserDefaults.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace gps {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kBoard[] = "/devices/pnp0/00:04";

std::string terminal(const std::string& parent, const std::string& name,
                     const std::string& more = {})
{
    return "P: " + parent + "/tty/" + name + "\nN: " + name +
           "\nE: SUBSYSTEM=tty\nE: DEVNAME=/dev/" + name + "\n" + more + "\n";
}

class SerialPortsTest : public testing::Test {
protected:
    SerialPortsTest()
    {
        setTestPorts({}); // not those of the user who runs the test
        testbed_.add(
            "P: /devices/pci0/usb1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nA: product=Host "
            "controller\\n\n\n"
            "P: /devices/pnp0/00:04\nL: driver=../../bus/pnp/drivers/serial\nE: SUBSYSTEM=pnp\n");
    }
    ~SerialPortsTest() override { UserDefaults::standard().setForThisRun(kTestPortsKey, {}); }

    static void setTestPorts(Array paths)
    {
        UserDefaults::standard().setForThisRun(kTestPortsKey, std::move(paths));
    }

    /// Adds an adapter with its port. @param attributes  of the adapter, as "product=X"
    void addAdapter(const std::string& port, const std::vector<std::string>& attributes) const
    {
        const auto adapter = "/devices/pci0/usb1/" + port;
        const auto interface = adapter + "/" + port + ":1.0";
        auto description = "P: " + adapter + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n";
        for (const auto& attribute : attributes)
            description += "A: " + attribute + "\\n\n";
        description += "\nP: " + interface + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\n";
        description += "\nP: " + interface + "/" + port +
                       "\nL: driver=../../drv/pl2303\nE: SUBSYSTEM=usb-serial\n";
        testbed_.add(description + "\n" + terminal(interface + "/" + port, port));
    }

    static std::vector<std::string> namesOfPorts()
    {
        std::vector<std::string> names;
        for (const auto& port : getSerialPorts())
            names.push_back(*port.as<Dictionary>()->findString("name"));
        return names;
    }

    support::Testbed testbed_;
};

TEST_F(SerialPortsTest, WithoutPortsTheListIsEmpty)
{
    EXPECT_THAT(getSerialPorts(), IsEmpty());
}

TEST_F(SerialPortsTest, AUsbPortIsNamedAfterItsAdapter)
{
    addAdapter("ttyUSB0",
               {"product=USB-Serial Controller", "idVendor=067b", "idProduct=2303", "serial=A1B2"});
    const Array expected{Dictionary{{"location", "/dev/ttyUSB0"},
                                    {"name", "USB-Serial Controller (/dev/ttyUSB0)"},
                                    {"vendorID", 0x067B},
                                    {"productID", 0x2303},
                                    {"serialNumber", "A1B2"}}};
    EXPECT_TRUE(getSerialPorts() == expected);
}

TEST_F(SerialPortsTest, PropertiesThatAnAdapterLacksAreLeftOut)
{
    addAdapter("ttyACM0", {"idVendor=none"});
    const Array expected{Dictionary{{"location", "/dev/ttyACM0"}, {"name", "/dev/ttyACM0"}}};
    EXPECT_TRUE(getSerialPorts() == expected);
}

TEST_F(SerialPortsTest, APortOfTheBoardIsNamedByItsPath)
{
    testbed_.add(terminal(kBoard, "ttyS0", "A: type=4\\n\n"));
    const Array expected{Dictionary{{"location", "/dev/ttyS0"}, {"name", "/dev/ttyS0"}}};
    EXPECT_TRUE(getSerialPorts() == expected);
}

TEST_F(SerialPortsTest, APortThatARuleTiesToAReceiverIsMarked)
{
    testbed_.add(terminal(kBoard, "ttyS0", "A: type=4\\n\nE: ID_GPS_RECEIVER=1\n"));
    testbed_.add(terminal(kBoard, "ttyS1", "A: type=4\\n\nE: ID_GPS_RECEIVER=0\n"));
    const Array expected{
        Dictionary{{"location", "/dev/ttyS0"}, {"name", "/dev/ttyS0"}, {"receiver", true}},
        Dictionary{{"location", "/dev/ttyS1"}, {"name", "/dev/ttyS1"}}};
    EXPECT_TRUE(getSerialPorts() == expected);
}

TEST_F(SerialPortsTest, APortWithoutHardwareIsNotListed)
{
    testbed_.add("P: /devices/platform/idle\nE: SUBSYSTEM=platform\n");
    testbed_.add(terminal("/devices/virtual", "tty1"));        // a console without hardware
    testbed_.add(terminal(kBoard, "ttyS1", "A: type=0\\n\n")); // a port number without a port
    testbed_.add(terminal("/devices/platform/idle", "ttyX0")); // a device without a driver
    testbed_.add("P: /devices/pnp0/00:04/tty/noNode\nE: SUBSYSTEM=tty\n"); // no device node
    EXPECT_THAT(namesOfPorts(), IsEmpty());
}

TEST_F(SerialPortsTest, APortMayHaveAnyNameButAConsoles)
{
    for (const char* const name : {"rfcomm0", "tnt0", "ttA0", "ttyACM0", "ttyS63"})
        testbed_.add(terminal(kBoard, name));
    for (const char* const name : {"tty0", "tty9", "tty63"})
        testbed_.add(terminal(kBoard, name));
    EXPECT_THAT(namesOfPorts(), ElementsAre("/dev/rfcomm0", "/dev/tnt0", "/dev/ttA0",
                                            "/dev/ttyACM0", "/dev/ttyS63"));
}

TEST_F(SerialPortsTest, TheDriverMayBelongToAnyParentOfThePort)
{
    testbed_.add("P: /devices/pnp0/00:04/00:04:0\nE: SUBSYSTEM=serial-base\n\n"
                 "P: /devices/pnp0/00:04/00:04:0/00:04:0.0\nE: SUBSYSTEM=serial-base\n");
    testbed_.add(terminal("/devices/pnp0/00:04/00:04:0/00:04:0.0", "ttyS0", "A: type=10\\n\n"));
    EXPECT_THAT(namesOfPorts(), ElementsAre("/dev/ttyS0"));
}

TEST_F(SerialPortsTest, UsbPortsComeFirstAndNamesAreSortedWithNumbersInOrder)
{
    for (const char* name : {"ttyS10", "ttyS2", "ttyAMA0"})
        testbed_.add(terminal(kBoard, name));
    addAdapter("ttyUSB10", {"product=Serial"});
    addAdapter("ttyUSB9", {"product=Serial"});
    addAdapter("ttyUSB1", {"product=Cable 10"});
    addAdapter("ttyUSB3", {"product=Cable 9"});
    addAdapter("ttyUSB2", {});
    EXPECT_THAT(namesOfPorts(),
                ElementsAre("/dev/ttyUSB2", "Cable 9 (/dev/ttyUSB3)", "Cable 10 (/dev/ttyUSB1)",
                            "Serial (/dev/ttyUSB9)", "Serial (/dev/ttyUSB10)", //
                            "/dev/ttyAMA0", "/dev/ttyS2", "/dev/ttyS10"));
}

TEST_F(SerialPortsTest, PortsNamedByTheUserComeLastInTheirOrderAndOnlyOnce)
{
    testbed_.add(terminal(kBoard, "ttyS0"));
    setTestPorts({"/dev/pts/9", "/dev/pts/10", "/dev/ttyS0", "/dev/pts/1", "/dev/pts/10"});
    EXPECT_THAT(namesOfPorts(),
                ElementsAre("/dev/ttyS0", "/dev/pts/9", "/dev/pts/10", "/dev/pts/1"));
    const Value expected = Dictionary{{"location", "/dev/pts/9"}, {"name", "/dev/pts/9"}};
    EXPECT_TRUE(getSerialPorts().at(1) == expected);
}

TEST_F(SerialPortsTest, AUserDefaultThatIsNotAListOfPathsIsIgnored)
{
    setTestPorts({"/dev/pts/9", 1});
    EXPECT_THAT(namesOfPorts(), IsEmpty());
}

TEST_F(SerialPortsTest, APortThatAppearsOrDisappearsIsAnnouncedAndTheListFollows)
{
    DeviceMonitor monitor;
    addAdapter("ttyUSB0", {"product=Cable"});
    const std::string device = "/devices/pci0/usb1/ttyUSB0/ttyUSB0:1.0/ttyUSB0/tty/ttyUSB0";
    testbed_.announce(device, "add");
    EXPECT_TRUE(monitor.wait(30s).serialPorts);
    EXPECT_THAT(namesOfPorts(), ElementsAre("Cable (/dev/ttyUSB0)"));
    testbed_.remove(device);
    EXPECT_TRUE(monitor.wait(30s).serialPorts);
    EXPECT_THAT(namesOfPorts(), IsEmpty());
}

} // namespace
} // namespace gps
