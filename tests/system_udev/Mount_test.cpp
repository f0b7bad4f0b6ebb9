// SPDX-License-Identifier: MIT
// The built program mounts, unmounts and ejects disks of a mocked machine through a mocked udisks2,
// and notifies a mocked desktop.

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <platform_udev/Testbed.h>
#include <sys/wait.h>
#include <system/Program.h>
#include <system/Receiver.h>
#include <system/Running.h>
#include <system_udev/MessageBus.h>

namespace {

using support::Ran;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr char kStickNode[] = "/sys/devices/pci0/usb1/1-1/1-1:1.0/host1/target1:0:0/1:0:0:0/block/"
                              "sdb/sdb1";

/// A stick with a receiver's files that is plugged in and not mounted.
class Mount : public testing::Test {
protected:
    Mount()
    {
        testbed_.addStickAndInternalDisk();
        umockdev_testbed_set_property(testbed_.get(), kStickNode, "ID_FS_TYPE", "vfat");
        testbed_.mount("");
    }

    /// Starts udisks2. @param more  further parameters, as JSON with a comma in front
    void startService(const std::string& more = {})
    {
        service_.emplace(bus_, "org.freedesktop.UDisks2",
                         MAGELLAN_SOURCE_DIR "/tests/desktop/udisks2.py",
                         "{\"folder\":\"" + receiver_.path() + "\"" + more + "}");
    }

    /// Runs the program.
    [[nodiscard]] Ran magellangps(const std::vector<std::string>& words) const
    {
        auto environment = bus_.environment();
        environment.push_back("XDG_STATE_HOME=" + state_.path());
        return support::magellangps(words, {.environment = environment});
    }

    /// @param redirection  of its output, for the shell
    [[nodiscard]] support::Running watch(const std::vector<std::string>& options,
                                         const std::string& redirection = {}) const
    {
        std::vector<std::string> words{"/bin/sh", "-c", "exec env \"$@\"" + redirection, "sh"};
        for (const auto& setting : bus_.environment())
            words.push_back(setting);
        words.insert(words.end(),
                     {MAGELLAN_BIN_DIR "/magellangps", "watch", "--into", state_.path("gps")});
        words.insert(words.end(), options.begin(), options.end());
        return support::Running{words};
    }

    [[nodiscard]] std::string trip() const
    {
        return state_.put(
            "trip.gpx",
            "<gpx version=\"1.1\"><wpt lat=\"46.5\" lon=\"7.25\"><name>A</name></wpt></gpx>");
    }

    /// The methods that were called, each followed by a blank, once the last one is this one.
    [[nodiscard]] std::string callsUntil(const std::string& last)
    {
        std::string calls;
        for (int reads = 0; reads < 150; ++reads) {
            const auto& printed = service_->read();
            calls.clear();
            for (const std::string method : {"Mount", "Unmount", "PowerOff", "Eject"}) {
                for (auto at = printed.find(' ' + method + " {"); at != std::string::npos;
                     at = printed.find(' ' + method + " {", at + 1))
                    calls += method + " ";
            }
            if (calls.find(last) != std::string::npos)
                break;
        }
        return calls;
    }

    const support::Testbed testbed_;
    const support::MessageBus bus_;
    const support::Receiver receiver_;
    const support::TemporaryFolder state_;
    std::optional<support::MockedService> service_;
};

TEST_F(Mount, ExplainListsTheDiskWithTheCommandThatMountsIt)
{
    EXPECT_THAT(magellangps({"devices", "--explain"}).out,
                HasSubstr("\nnot mounted:\n  /dev/sdb1 (vfat). Mount it with \"udisksctl mount -b "
                          "/dev/sdb1\".\n"));
    umockdev_testbed_set_property(testbed_.get(), kStickNode, "ID_FS_LABEL", "GPS");
    EXPECT_THAT(
        magellangps({"devices", "--explain", "--json"}).out,
        EndsWith(R"("unmounted":[{"location":"/dev/sdb1","fileSystem":"vfat","label":"GPS",)"
                 R"("command":"udisksctl mount -b /dev/sdb1"}]})"
                 "\n"));
    EXPECT_THAT(magellangps({"devices", "--json"}).out, Not(HasSubstr("unmounted")));
}

TEST_F(Mount, DiskOfAnotherFileSystemOrAMountedOneIsNotListed)
{
    umockdev_testbed_set_property(testbed_.get(), kStickNode, "ID_FS_TYPE", "ext4");
    EXPECT_THAT(magellangps({"devices", "--explain"}).out, Not(HasSubstr("not mounted")));
    umockdev_testbed_set_property(testbed_.get(), kStickNode, "ID_FS_TYPE", "exfat");
    EXPECT_THAT(magellangps({"devices", "--explain"}).out, HasSubstr("/dev/sdb1 (exfat)"));
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    EXPECT_THAT(magellangps({"devices", "--explain"}).out, Not(HasSubstr("not mounted")));
}

TEST_F(Mount, CommandThatFindsNoReceiverNamesTheDisk)
{
    const auto ran = magellangps({"acquire"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.err, AllOf(HasSubstr("/dev/sdb1 (a disk that is not mounted)"),
                               HasSubstr("mount the disk with --mount")));
}

TEST_F(Mount, AcquireMountsTheDiskAndUnmountsItAfterwards)
{
    startService();
    const auto ran = magellangps({"acquire", "--mount", "--no-tracks", "-o", state_.path("a.gpx")});
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(ran.err,
                EndsWith("note: The disk /dev/sdb1 is unmounted again and can be unplugged.\n"));
    EXPECT_THAT(state_.read("a.gpx"), HasSubstr("<name>Camp</name>"));
    EXPECT_EQ(callsUntil("Unmount"), "Mount Unmount ");
}

TEST_F(Mount, DiskThatIsNamedIsMounted)
{
    startService();
    for (const char* const node : {"/dev/sdb1", "/dev/sdb"}) {
        const auto ran = magellangps({"acquire", "--mount", "--device", node});
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_THAT(ran.out, HasSubstr("Day 1"));
    }
    EXPECT_THAT(magellangps({"acquire", "--device", "/dev/sdb1"}).err,
                HasSubstr("Mount it with --mount"));
}

TEST_F(Mount, ReceiverThatIsMountedAlreadyIsLeftMounted)
{
    startService();
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"acquire", "--mount"},
          std::vector<std::string>{"acquire", "--mount", "--device", "/dev/sdb1"}}) {
        const auto ran = magellangps(words);
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_THAT(ran.err, IsEmpty());
    }
    EXPECT_THAT(service_->read(), Not(HasSubstr("ount {")));
}

TEST_F(Mount, SendAndRestoreMountTheDiskAndUnmountItAfterwards)
{
    startService();
    const auto sent = magellangps({"send", "--mount", trip()});
    EXPECT_EQ(sent.status, 0) << sent.err;
    EXPECT_THAT(sent.err, HasSubstr("is unmounted again"));
    EXPECT_THAT(receiver_.read("Points/Default POI File.upt"), HasSubstr(",A,"));
    const auto listed = magellangps({"restore", "--mount"});
    EXPECT_EQ(listed.status, 0) << listed.err;
    const auto name = listed.out.substr(listed.out.find("\n20") + 1, 16);
    const auto restored = magellangps({"restore", "--mount", name});
    EXPECT_EQ(restored.status, 0) << restored.err;
    EXPECT_THAT(restored.err, HasSubstr("is unmounted again"));
    EXPECT_EQ(callsUntil("Unmount Unmount Unmount"), "Mount Mount Mount Unmount Unmount Unmount ");
}

TEST_F(Mount, DiskThatIsNotAReceiverIsUnmountedAtOnce)
{
    startService();
    std::filesystem::remove_all(receiver_.path("USBTRANS"));
    const auto ran = magellangps({"acquire", "--mount"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.err, StartsWith("magellangps: No receiver is mounted. "));
    EXPECT_EQ(callsUntil("Unmount"), "Mount Unmount ");
}

TEST_F(Mount, WithoutUdisksOneLineSaysSo)
{
    const auto ran = magellangps({"acquire", "--mount"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.err, AllOf(StartsWith("magellangps: The disk cannot be mounted, because "
                                          "udisks2 is not running ("),
                               EndsWith("). Install the package udisks2, or mount and unmount the "
                                        "disk yourself. Path: /dev/sdb1\n")));
    const auto noBus = support::magellangps(
        {"acquire", "--mount"}, {.environment = {"DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nowhere"}});
    EXPECT_EQ(noBus.status, 3);
    EXPECT_THAT(noBus.err, HasSubstr("because udisks2 is not running"));
}

TEST_F(Mount, WithoutADiskToMountUdisksIsMentionedAllTheSame)
{
    const support::TemporaryFolder other;
    testbed_.mount(testbed_.mountLine("8:17", other.path()));
    const auto ran = magellangps({"acquire", "--mount"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.err, AllOf(StartsWith("magellangps: No receiver is mounted. "),
                               HasSubstr("Disks cannot be mounted, because udisks2 is not "
                                         "running (")));
    startService();
    EXPECT_THAT(magellangps({"acquire", "--mount"}).err, Not(HasSubstr("udisks2")));
}

TEST_F(Mount, WatchSaysAtItsStartThatUdisksIsMissing)
{
    auto watching = watch({"--mount"}, " 2>&1");
    EXPECT_THAT(watching.readUntil("watching: "),
                StartsWith("note: Disks cannot be mounted, because udisks2 is not running ("));
    watching.end(SIGTERM);
}

TEST_F(Mount, RefusalIsTheReasonThatUdisksGives)
{
    startService(R"(,"fails":{"Mount":"org.freedesktop.UDisks2.Error.NotAuthorized"})");
    const auto ran = magellangps({"acquire", "--mount"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.err, StartsWith("magellangps: The disk cannot be mounted: it was refused. "));
}

TEST_F(Mount, DiskThatCannotBeUnmountedIsAnError)
{
    startService(R"(,"fails":{"Unmount":"org.freedesktop.UDisks2.Error.DeviceBusy"})");
    const auto ran = magellangps({"acquire", "--mount", "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, StartsWith("magellangps: The disk cannot be unmounted, because another "
                                    "program uses it. "));
    EXPECT_THAT(ran.out, AllOf(StartsWith("{\"status\":1,"), HasSubstr("cannot be unmounted")));
}

TEST_F(Mount, EjectUnmountsTheDiskAndSwitchesTheDeviceOff)
{
    startService();
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    const auto ran = magellangps({"acquire", "--eject"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "note: The device /dev/sdb1 is switched off and can be unplugged.\n");
    EXPECT_EQ(callsUntil("PowerOff"), "Unmount PowerOff ");
    const auto sent = magellangps({"send", "--mount", "--eject", "--json", trip()});
    EXPECT_EQ(sent.status, 0) << sent.err;
    EXPECT_THAT(sent.out, HasSubstr("The device /dev/sdb1 is switched off"));
}

TEST_F(Mount, DeviceThatCannotBeSwitchedOffIsEjectedOrUnmounted)
{
    startService(R"(,"can_power_off":false)");
    const auto ran = magellangps({"acquire", "--mount", "--eject"});
    EXPECT_EQ(ran.err, "note: The device /dev/sdb1 is unmounted and can be unplugged.\n");
    EXPECT_EQ(callsUntil("Eject"), "Mount Unmount Eject ");
    service_.reset();
    startService(R"(,"can_power_off":false,"ejectable":false)");
    const auto again = magellangps({"acquire", "--mount", "--eject"});
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.err, ran.err);
    EXPECT_EQ(callsUntil("Unmount"), "Mount Unmount ");
}

TEST_F(Mount, DeviceThatRefusesToBeSwitchedOffIsAnError)
{
    startService(R"(,"fails":{"PowerOff":"org.freedesktop.UDisks2.Error.DeviceBusy"})");
    const auto ran = magellangps({"acquire", "--mount", "--eject"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("The device cannot be switched off, because another program "
                                   "uses it. "));
}

TEST_F(Mount, FailedTransferDoesNotEjectTheDevice)
{
    startService();
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    receiver_.put("Tracks/a.log", "\xFF\r\n");
    const auto ran = magellangps({"acquire", "--eject"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("note: The device was not ejected, because "));
    EXPECT_THAT(service_->read(), Not(HasSubstr("ount {")));
}

TEST_F(Mount, DeviceThatIsNotARemovableDiskIsNotDownloadedFromToEjectIt)
{
    startService();
    const auto ran = magellangps({"acquire", "--eject", "--device", receiver_.path()});
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(ran.err, "magellangps: This device cannot be ejected, because it is not a removable "
                       "disk. Leave out --eject. Path: " +
                           receiver_.path() + "\n");
    EXPECT_THAT(ran.out, IsEmpty());
}

TEST_F(Mount, WatchMountsEachDiskOnceAndUnmountsItAfterTheDownload)
{
    startService();
    auto watching = watch({"--mount"});
    const auto device = "Magellan device 42, " + receiver_.path();
    EXPECT_THAT(watching.readUntil("gone: "),
                AllOf(HasSubstr("\nappeared: " + device + "\nsaved: "),
                      HasSubstr("\nunmounted: " + device + ": it can be unplugged\n")));
    const int status = watching.end(SIGTERM);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(callsUntil("Unmount"), "Mount Unmount ");
}

TEST_F(Mount, WatchLeavesADiskAloneThatTheUserHasUnmounted)
{
    startService();
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    auto watching = watch({"--mount"});
    watching.readUntil("\nsaved: ");
    testbed_.mount("");
    testbed_.announceStick("change");
    watching.readUntil("gone: ");
    testbed_.announceStick("change");
    for (int reads = 0; reads < 10; ++reads) // a second look is a second later
        watching.read();
    EXPECT_THAT(service_->read(), Not(HasSubstr("ount {")));
}

TEST_F(Mount, WatchReportsADiskThatCannotBeMounted)
{
    startService(R"(,"fails":{"Mount":"org.freedesktop.UDisks2.Error.NotAuthorized"})");
    auto watching = watch({"--mount"});
    EXPECT_THAT(watching.readUntil("/dev/sdb1\n"),
                HasSubstr("\nnote: The disk cannot be mounted: it was refused. "));
}

TEST_F(Mount, WatchNotifiesTheDesktopOfWhatWasSaved)
{
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    support::MockedService desktop{bus_, "org.freedesktop.Notifications", "notification_daemon"};
    auto watching = watch({"--notify"});
    EXPECT_THAT(desktop.readUntil(" [] {} -1"),
                AllOf(HasSubstr("Notify \"magellangps\" 0 \"\" \"Magellan device 42\" \"saved: " +
                                state_.path("gps/42-")),
                      HasSubstr(".gpx: 2 waypoints, 1 geocache, 1 route, 1 track (2 points)\"")));
    EXPECT_THAT(watching.readUntil("\nsaved: "), HasSubstr("\nsaved: "));
}

TEST_F(Mount, WatchNotifiesTheDesktopOfTheLastFailureOnly)
{
    receiver_.put("Tracks/a.log", "\xFF\r\n");
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()));
    support::MockedService desktop{bus_, "org.freedesktop.Notifications", "notification_daemon"};
    auto watching = watch({"--notify"});
    const auto shown = desktop.readUntil(" [] {} -1");
    EXPECT_THAT(shown,
                AllOf(HasSubstr("failed: Magellan device 42, "), Not(HasSubstr("Trying again"))));
    EXPECT_THAT(watching.readUntil("Trying again."), HasSubstr("Trying again."));
}

TEST_F(Mount, WithoutADesktopWatchSaysSoOnceAndGoesOn)
{
    const support::Receiver other;
    other.put("USBTRANS/UNIT_ID.DAT", "Serial Number=43\r\n");
    testbed_.mount(testbed_.mountLine("8:17", receiver_.path()) +
                   testbed_.mountLine("8:17", other.path()));
    auto watching = watch({"--notify"}, " 2>&1");
    watching.readUntil("gps/42-");
    const auto printed = watching.readUntil("gps/43-");
    EXPECT_THAT(printed, HasSubstr("gps/43-"));
    constexpr char kNote[] = "note: The desktop cannot be notified: ";
    EXPECT_THAT(printed, HasSubstr(kNote));
    EXPECT_EQ(printed.find(kNote), printed.rfind(kNote));
}

} // namespace
