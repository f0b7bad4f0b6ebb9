// SPDX-License-Identifier: MIT
// `watch` with the built program, on a mocked device tree: receivers that appear, disappear and
// reappear.

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <platform_udev/Testbed.h>
#include <sys/wait.h>
#include <system/Program.h>
#include <system/Receiver.h>
#include <system/Running.h>

namespace {

using testing::HasSubstr;
using testing::Not;

class WatchedVolumes : public testing::Test {
protected:
    WatchedVolumes()
    {
        testbed_.addStickAndInternalDisk();
        testbed_.mount("");
    }

    [[nodiscard]] support::Running watch(const std::string& option = "-q") const
    {
        return support::Running{{"/usr/bin/env", "XDG_STATE_HOME=" + state_.path(),
                                 MAGELLAN_BIN_DIR "/magellangps", "watch", "--into", out_.path(),
                                 option}};
    }

    /// Announces a disk that stays repeatedly, since an event may be lost between two programs,
    /// until the program prints something new that contains the text. @return  the new output
    std::string announceUntil(support::Running& watching, const std::string& text)
    {
        for (int tries = 0; watching.read().find(text, seen_) == std::string::npos && tries < 150;
             ++tries)
            testbed_.announceInternalDisk("change");
        const auto printed = watching.readUntil("\n").substr(seen_);
        seen_ += printed.size();
        return printed;
    }

    support::Testbed testbed_;
    support::Receiver receiver_;
    support::TemporaryFolder out_;
    support::TemporaryFolder state_;
    std::size_t seen_ = 0;
};

TEST_F(WatchedVolumes, ReceiverIsSavedOnceEachTimeItAppears)
{
    auto watching = watch();
    EXPECT_THAT(watching.readUntil("watching: "), Not(HasSubstr("appeared")));
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(announceUntil(watching, "\nsaved: "),
                HasSubstr("appeared: Magellan device 42, " + receiver_.path() + "\n"));
    testbed_.mount("");
    EXPECT_THAT(announceUntil(watching, "gone: "), Not(HasSubstr("saved: ")))
        << "once while it stayed";
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(announceUntil(watching, "\nsaved: "), HasSubstr("appeared: "));
    const int status = watching.end(SIGTERM);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

TEST_F(WatchedVolumes, ReceiverThatReappearsHasNothingNew)
{
    auto watching = watch("--new-only");
    watching.readUntil("watching: ");
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(announceUntil(watching, "\nsaved: "),
                HasSubstr(": 2 waypoints, 1 geocache, 1 route, 1 track (2 points)"));
    testbed_.mount("");
    (void)announceUntil(watching, "gone: ");
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(announceUntil(watching, "nothing new: "), HasSubstr("nothing new: "));
}

TEST_F(WatchedVolumes, ReceiverThatWasPulledOutIsSavedWithWhatIsNewOnItOnly)
{
    auto watching = watch("--new-only");
    watching.readUntil("watching: ");
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(announceUntil(watching, "\nsaved: "), HasSubstr("1 track (2 points)"));
    testbed_.mount("");
    testbed_.pullStickOut("sdb");
    EXPECT_THAT(announceUntil(watching, "gone: "), Not(HasSubstr("saved: ")));

    // Mounted elsewhere, as a desktop does while the old folder is in use.
    const support::TemporaryFolder again;
    std::filesystem::copy(receiver_.path(), again.path(), std::filesystem::copy_options::recursive);
    again.put(
        "Tracks/b.log",
        support::sentences({"PMGNTRK,4650.00000,N,00750.00000,E,01202,M,120000.00,A,,020624"}));
    testbed_.plugStickIn("sdc", 32);
    testbed_.mount(testbed_.mountLine("8:33", again.path()));
    const auto printed = announceUntil(watching, "\nsaved: ");
    EXPECT_THAT(printed, HasSubstr("appeared: Magellan device 42, " + again.path() + "\n"));
    EXPECT_THAT(printed, HasSubstr(": 1 track (1 point)\n"));
    EXPECT_THAT(printed, Not(HasSubstr("waypoint")));

    testbed_.mount("");
    testbed_.pullStickOut("sdc");
    (void)announceUntil(watching, "gone: ");
    testbed_.plugStickIn("sdd", 48);
    testbed_.mount(testbed_.mountLine("8:49", again.path()));
    EXPECT_THAT(announceUntil(watching, "nothing new: "), Not(HasSubstr("saved: ")));
}

TEST_F(WatchedVolumes, VolumeFilledAfterItsMountIsFoundWithoutAnotherEvent)
{
    std::filesystem::rename(receiver_.path("USBTRANS"), receiver_.path("later"));
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    auto watching = watch();
    watching.readUntil("watching: ");
    std::filesystem::rename(receiver_.path("later"), receiver_.path("USBTRANS"));
    EXPECT_THAT(watching.readUntil("\nsaved: "), HasSubstr("appeared: Magellan device 42"));
}

TEST_F(WatchedVolumes, SerialPortsAreNotOpenedUnlessRequested)
{
    const std::string port = "/devices/pci0/usb2/2-1/2-1:1.0/ttyUSB0";
    testbed_.add("P: " + port +
                 "\nL: driver=../../../../../../bus/usb-serial/drivers/pl2303\nE: "
                 "SUBSYSTEM=usb-serial\n\nP: " +
                 port +
                 "/tty/ttyUSB0\nN: ttyUSB0\nE: SUBSYSTEM=tty\nE: DEVNAME=/dev/ttyUSB0\nE: "
                 "MAJOR=188\nE: MINOR=0\nA: dev=188:0\\n\n");
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    auto watching = watch();
    EXPECT_THAT(watching.readUntil("\nsaved: "), Not(HasSubstr("ttyUSB0")));
    auto serial = watch("--serial");
    EXPECT_THAT(serial.readUntil("ttyUSB0"), HasSubstr("appeared: /dev/ttyUSB0, /dev/ttyUSB0\n"));
    (void)serial.end(SIGKILL); // it probes the port for a minute and a half
}

TEST_F(WatchedVolumes, OnlyTheNamedDriverIsWatchedEvenBeforeItIsOffered)
{
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    auto watching = watch("--driver=magellan-serial");
    watching.readUntil("watching: ");
    (void)watching.end(SIGTERM);
    EXPECT_THAT(watching.readUntil("stopped: on request\n"), Not(HasSubstr("appeared")));
}

TEST_F(WatchedVolumes, DevicesAreExplained)
{
    const support::TemporaryFolder empty;
    testbed_.mount(testbed_.mountLine("8:1", "/") + testbed_.mountLine("0:5", "/proc") +
                   testbed_.mountLine("8:17", receiver_.path()) +
                   testbed_.mountLine("8:17", empty.path()));
    const auto ran = support::magellangps(
        {"devices", "--explain"},
        {.environment = {"LD_PRELOAD=" + std::string{std::getenv("LD_PRELOAD")},
                         "UMOCKDEV_DIR=" + std::string{std::getenv("UMOCKDEV_DIR")}}});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(
        ran.out,
        HasSubstr("\n\nmagellan:\n"
                  "  " +
                  receiver_.path() +
                  " (removable volume), accepted: It is a receiver: Magellan device 42.\n"
                  "  " +
                  empty.path() +
                  " (removable volume), rejected: It has no file USBTRANS/UNIT_ID.DAT, so it is "
                  "not a receiver.\n"
                  "  / (built-in volume), skipped: Receivers mount as removable volumes.\n"
                  "  /proc (volume without a disk behind it), skipped: Receivers mount as "
                  "removable volumes.\n"
                  "No serial port was found."));
}

} // namespace
