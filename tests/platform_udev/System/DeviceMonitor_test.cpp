// SPDX-License-Identifier: MIT

#include "../Testbed.h"

#include <platform/System/DeviceMonitor.h>

#include <gtest/gtest.h>

#include <chrono>

namespace gps {
namespace {

using namespace std::chrono_literals;

constexpr char kDisk[] = "/devices/pci0/block/sdb";
constexpr char kPort[] = "/devices/pci0/tty/ttyUSB0";
constexpr char kNetwork[] = "/devices/pci0/net/eth9";

class DeviceMonitorTest : public testing::Test {
protected:
    DeviceMonitorTest()
    {
        testbed_.add("P: /devices/pci0/block/sdb\nN: sdb\nE: SUBSYSTEM=block\nE: DEVTYPE=disk\n\n"
                     "P: /devices/pci0/tty/ttyUSB0\nN: ttyUSB0\nE: SUBSYSTEM=tty\n\n"
                     "P: /devices/pci0/net/eth9\nE: SUBSYSTEM=net\n");
    }

    support::Testbed testbed_;
};

TEST_F(DeviceMonitorTest, ADiskIsAChangeOfVolumes)
{
    DeviceMonitor monitor;
    for (const char* action : {"add", "change", "remove"}) {
        testbed_.announce(kDisk, action);
        const auto changes = monitor.wait(10s);
        EXPECT_TRUE(changes.volumes) << action;
        EXPECT_FALSE(changes.serialPorts) << action;
        EXPECT_FALSE(changes.interrupted) << action;
    }
}

TEST_F(DeviceMonitorTest, ATerminalIsAChangeOfSerialPorts)
{
    DeviceMonitor monitor;
    for (const char* action : {"add", "remove"}) {
        testbed_.announce(kPort, action);
        const auto changes = monitor.wait(10s);
        EXPECT_TRUE(changes.serialPorts) << action;
        EXPECT_FALSE(changes.volumes) << action;
    }
}

TEST_F(DeviceMonitorTest, ChangesInQuickSuccessionAreReportedTogether)
{
    DeviceMonitor monitor;
    for (const char* device : {kDisk, kPort, kDisk})
        testbed_.announce(device, "add");
    const auto changes = monitor.wait(10s);
    EXPECT_TRUE(changes.volumes);
    EXPECT_TRUE(changes.serialPorts);
    const auto after = monitor.wait(0ms);
    EXPECT_FALSE(after.volumes);
    EXPECT_FALSE(after.serialPorts);
}

TEST_F(DeviceMonitorTest, OtherDevicesAreIgnored)
{
    DeviceMonitor monitor;
    testbed_.announce(kNetwork, "add");
    const auto changes = monitor.wait(50ms);
    EXPECT_FALSE(changes.volumes);
    EXPECT_FALSE(changes.serialPorts);
    testbed_.announce(kPort, "add"); // the monitor still works
    EXPECT_TRUE(monitor.wait(10s).serialPorts);
}

} // namespace
} // namespace gps
