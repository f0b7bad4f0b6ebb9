// SPDX-License-Identifier: MIT
// The built program on a mocked device tree: which volumes it lists, and that it sees them come.

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <platform_udev/Testbed.h>
#include <system/Receiver.h>

namespace {

constexpr char kStick[] = "/devices/pci0/usb1/1-1/1-1:1.0/host1/target1:0:0/1:0:0:0";

/// `magellangps devices --watch`, and what it has printed so far.
class Watching {
public:
    Watching()
    {
        std::array<int, 2> pipe{};
        EXPECT_EQ(::pipe(pipe.data()), 0);
        posix_spawn_file_actions_t files;
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_adddup2(&files, pipe[1], STDOUT_FILENO);
        std::string program = MAGELLAN_BIN_DIR "/magellangps";
        std::array<char*, 4> words{program.data(), const_cast<char*>("devices"), const_cast<char*>("--watch"), nullptr};
        EXPECT_EQ(::posix_spawn(&child_, program.c_str(), &files, nullptr, words.data(), environ), 0);
        ::posix_spawn_file_actions_destroy(&files);
        ::close(pipe[1]);
        out_ = pipe[0];
    }
    ~Watching()
    {
        ::kill(child_, SIGTERM);
        ::waitpid(child_, nullptr, 0);
        ::close(out_);
    }
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;

    /// Reads on for at most a fifth of a second. @return  all that came so far
    const std::string& read()
    {
        pollfd ready{out_, POLLIN, 0};
        std::array<char, 4096> piece{};
        if (::poll(&ready, 1, 200) == 1) {
            if (const auto count = ::read(out_, piece.data(), piece.size()); count > 0)
                printed_.append(piece.data(), static_cast<std::size_t>(count));
        }
        return printed_;
    }

private:
    pid_t child_ = 0;
    int out_ = -1;
    std::string printed_;
};

void mount(const std::string& lines)
{
    const auto folder = std::filesystem::path{std::getenv("UMOCKDEV_DIR")} / "proc/self";
    std::filesystem::create_directories(folder);
    std::ofstream{folder / "mountinfo"} << lines;
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

    constexpr int kTries = 150; // half a minute
    Watching watching;
    int tries = 0;
    while (watching.read().empty() && tries < kTries)
        ++tries;
    EXPECT_THAT(watching.read(), testing::Not(testing::HasSubstr("Magellan device 42")));

    mount("95 27 8:17 / " + receiver.path() + " rw - vfat /dev/sdb1 rw\n");
    // Announced again and again, since the program may still be on its way to listening.
    while (watching.read().find("Magellan device 42") == std::string::npos && ++tries < kTries)
        testbed.announce(std::string{kStick} + "/block/sdb/sdb1", "add");
    EXPECT_THAT(watching.read(), testing::HasSubstr("Magellan device 42"));
    EXPECT_THAT(watching.read(), testing::HasSubstr(receiver.path()));
}

} // namespace
