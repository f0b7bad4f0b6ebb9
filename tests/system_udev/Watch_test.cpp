// SPDX-License-Identifier: MIT
// `devices --watch` on a mocked device tree: which volumes it lists, and that it notices new ones.

#include <gmock/gmock.h>

#include <string>

#include <platform_udev/Testbed.h>
#include <system/Receiver.h>
#include <system/Running.h>

namespace {

constexpr int kTries = 150; // half a minute

/// `magellangps devices --watch`.
class Watching : public support::Running {
public:
    Watching() : Running({MAGELLAN_BIN_DIR "/magellangps", "devices", "--watch"})
    {
        first_ = readUntil("\n").size();
    }

    /// What it has printed since the first list.
    std::string since() { return read().substr(first_); }

private:
    std::size_t first_ = 0;
};

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
    testbed.add(
        "P: " + above +
        "\nL: driver=../../../../../../bus/usb-serial/drivers/pl2303\nE: SUBSYSTEM=usb-serial\n\n" +
        "P: " + portDevice(number) + "\nN: " + name + "\nE: SUBSYSTEM=tty\nE: DEVNAME=/dev/" +
        name + "\nE: MAJOR=188\nE: MINOR=" + minor + "\nA: dev=188:" + minor + "\\n\n");
}

TEST(Watch, PrintsAgainWhenAReceiverIsPluggedIn)
{
    const support::Testbed testbed;
    const support::Receiver receiver;
    testbed.addStickAndInternalDisk();
    support::Testbed::mount("");

    Watching watching;
    EXPECT_EQ(watching.read(), "No mounted receiver and no serial port was found.\n");

    support::Testbed::mount(support::Testbed::mountLine("8:17", receiver.path()));
    // Announced repeatedly, since an event may be lost between two programs.
    for (int tries = 0;
         watching.since().find("Magellan device 42") == std::string::npos && tries < kTries;
         ++tries)
        testbed.announceStick("add");
    EXPECT_THAT(watching.read(), testing::HasSubstr("Magellan device 42"));
    EXPECT_THAT(watching.read(), testing::HasSubstr(receiver.path()));
}

TEST(Watch, FollowsAPortThatAppearsLater)
{
    const support::Testbed testbed;
    testbed.add("P: /devices/virtual/tty/console\nE: SUBSYSTEM=tty\n\n"); // not a port, but it
                                                                          // causes an event
    support::Testbed::mount("");
    Watching watching;
    EXPECT_EQ(watching.read(), "No mounted receiver and no serial port was found.\n");
    const auto waitFor = [&](const std::string& text) {
        for (int tries = 0; watching.since().find(text) == std::string::npos && tries < kTries;
             ++tries)
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
