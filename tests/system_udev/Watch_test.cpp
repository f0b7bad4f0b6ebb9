// SPDX-License-Identifier: MIT
// The built program on a mocked device tree: which volumes it lists, and that it sees them come.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>

#include <platform_udev/Testbed.h>
#include <system/Receiver.h>
#include <system/Running.h>

namespace {

constexpr char kStick[] = "/devices/pci0/usb1/1-1/1-1:1.0/host1/target1:0:0/1:0:0:0";

constexpr int kTries = 150; // half a minute

/// `magellangps devices --watch`.
class Watching : public support::Running {
public:
    Watching() : Running({MAGELLAN_BIN_DIR "/magellangps", "devices", "--watch"}) { first_ = readUntil("\n").size(); }

    /// What it has printed after the first look.
    std::string since() { return read().substr(first_); }

private:
    std::size_t first_ = 0;
};

void mount(const std::string& lines)
{
    const auto folder = std::filesystem::path{std::getenv("UMOCKDEV_DIR")} / "proc/self";
    std::filesystem::create_directories(folder);
    std::ofstream{folder / "mountinfo"} << lines;
}

std::string portDevice(int number)
{
    const auto name = "ttyUSB" + std::to_string(number);
    return "/devices/pci0/usb2/2-1/2-1:1.0/" + name + "/tty/" + name;
}

void addPort(const support::Testbed& testbed, int number)
{
    const auto name = "ttyUSB" + std::to_string(number);
    const auto minor = std::to_string(number);
    const std::string above = "/devices/pci0/usb2/2-1/2-1:1.0/" + name;
    testbed.add("P: " + above + "\nL: driver=../../../../../../bus/usb-serial/drivers/pl2303\nE: SUBSYSTEM=usb-serial\n\n" +
                "P: " + portDevice(number) + "\nN: " + name + "\nE: SUBSYSTEM=tty\nE: DEVNAME=/dev/" + name +
                "\nE: MAJOR=188\nE: MINOR=" + minor + "\nA: dev=188:" + minor + "\\n\n");
}

TEST(Watch, PrintsAgainWhenAReceiverIsPluggedIn)
{
    const support::Testbed testbed;
    const support::Receiver receiver;
    testbed.add("P: /devices/pci0/usb1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n\n"
                "P: /devices/pci0/usb1/1-1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n\n"
                "P: /devices/pci0/usb1/1-1/1-1:1.0\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\n");
    testbed.addDisk(kStick, "sdb", 8, 16, true);
    mount("");

    Watching watching;
    EXPECT_EQ(watching.read(), "No mounted receiver and no serial port was found.\n");

    mount("95 27 8:17 / " + receiver.path() + " rw - vfat /dev/sdb1 rw\n");
    // Announced again and again, since an event may be lost between two programs.
    for (int tries = 0; watching.since().find("Magellan device 42") == std::string::npos && tries < kTries; ++tries)
        testbed.announce(std::string{kStick} + "/block/sdb/sdb1", "add");
    EXPECT_THAT(watching.read(), testing::HasSubstr("Magellan device 42"));
    EXPECT_THAT(watching.read(), testing::HasSubstr(receiver.path()));
}

TEST(Watch, FollowsAPortThoughThereWasNoneAtTheStart)
{
    const support::Testbed testbed;
    testbed.add("P: /devices/virtual/tty/console\nE: SUBSYSTEM=tty\n\n"); // no port, but good for an event
    mount("");
    Watching watching;
    EXPECT_EQ(watching.read(), "No mounted receiver and no serial port was found.\n");
    const auto waitFor = [&](const std::string& text) {
        for (int tries = 0; watching.since().find(text) == std::string::npos && tries < kTries; ++tries)
            testbed.announce("/devices/virtual/tty/console", "change");
        EXPECT_THAT(watching.since(), testing::HasSubstr(text));
    };

    addPort(testbed, 0);
    waitFor("*  magellan-serial  /dev/ttyUSB0              /dev/ttyUSB0\n");
    addPort(testbed, 1);
    waitFor("   magellan-serial  /dev/ttyUSB1              /dev/ttyUSB1\n");
    testbed.remove(portDevice(0));
    waitFor("*  magellan-serial  /dev/ttyUSB1              /dev/ttyUSB1\n");
    testbed.remove(portDevice(1));
    waitFor("No mounted receiver and no serial port was found.\n");
}

} // namespace
