// SPDX-License-Identifier: MIT

#include "host/bundle/SerialPort.h"

#include "support/AsNobody.h"
#include "support/PseudoTerminal.h"
#include "support/TemporaryFolder.h"
#include "support/TestPorts.h"

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::string textOf(const gps::Error& error)
{
    return *error.description() + " | " + *error.suggestion() + " | " + *error.path();
}

TEST(SerialPort, LocationIsACharacterDeviceALinkToOneOrOneThatIsGone)
{
    // Not where temporary files are, which may be below /dev.
    const support::TemporaryFolder folder{MAGELLAN_BIN_DIR};
    const support::PseudoTerminal port;
    std::filesystem::create_symlink(port.path(), folder.path("link"));
    std::filesystem::create_symlink("nowhere", folder.path("dangling"));
    for (const auto& location : {port.path(), folder.path("link"), std::string{"/dev/null"},
                                 std::string{"/dev/no such port"}})
        EXPECT_TRUE(host::isSerialPort(location)) << location;
    for (const auto& location :
         {folder.path(), folder.put("file", ""), folder.path("gone"), folder.path("dangling"),
          std::string{"/dev"}, std::string{"/dev/shm"}, std::string{}})
        EXPECT_FALSE(host::isSerialPort(location)) << location;
}

TEST(SerialPort, AddedPortComesAfterTheStoredOnes)
{
    const support::TestPorts ports{{"/dev/stored"}};
    host::addSerialPort("/dev/mine");
    EXPECT_THAT(*gps::UserDefaults::standard().stringArrayForKey(gps::kTestPortsKey),
                ElementsAre("/dev/stored", "/dev/mine"));
}

TEST(SerialPort, BusyPortIsForTheOtherProgramToClose)
{
    const support::PseudoTerminal port;
    ASSERT_EQ(::flock(port.otherProgram(), LOCK_EX), 0);
    EXPECT_THAT(textOf(host::explainPortFailure(port.path())),
                AllOf(HasSubstr("Another program has the port open | Close that program"),
                      HasSubstr("sudo fuser -v " + port.path())))
        << "this process does not count";
}

TEST(SerialPort, ProgramThatHasABusyPortOpenIsNamed)
{
    const support::PseudoTerminal port;
    std::array<int, 2> ready{};
    ASSERT_EQ(::pipe(ready.data()), 0);
    const auto child = ::fork();
    if (child == 0) {
        const int line = ::open(port.path().c_str(), O_RDWR | O_NOCTTY);
        (void)::flock(line, LOCK_EX);
        (void)!::write(ready[1], "x", 1);
        for (;;)
            ::pause();
    }
    char byte = 0;
    EXPECT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_EQ(textOf(host::explainPortFailure(port.path())),
              "Another program has the port open: host_tests (process " + std::to_string(child) +
                  ") | Close that program, and try again | " + port.path());
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST(SerialPort, BusyPortIsWaitedForUntilItIsFree)
{
    const support::PseudoTerminal port;
    ASSERT_EQ(::flock(port.otherProgram(), LOCK_EX), 0);
    int calls = 0;
    host::waitWhileBusy(port.path(), [&] {
        if (++calls == 2)
            ::flock(port.otherProgram(), LOCK_UN);
        return true;
    });
    EXPECT_EQ(calls, 2);
}

TEST(SerialPort, WaitingForABusyPortCanBeStopped)
{
    const support::PseudoTerminal port;
    ASSERT_EQ(::flock(port.otherProgram(), LOCK_EX), 0);
    int calls = 0;
    host::waitWhileBusy(port.path(), [&] { return ++calls < 3; });
    EXPECT_EQ(calls, 3);
}

TEST(SerialPort, FreeOrMissingPortIsNotWaitedFor)
{
    const support::PseudoTerminal port;
    for (const auto& location : {port.path(), std::string{"/dev/no such port"}, std::string{}})
        host::waitWhileBusy(location, [] {
            ADD_FAILURE();
            return false;
        });
    EXPECT_EQ(::flock(port.otherProgram(), LOCK_EX | LOCK_NB), 0) << "not locked";
}

TEST(SerialPort, PortThatOpensCanBeTriedAgain)
{
    const support::PseudoTerminal port;
    EXPECT_EQ(textOf(host::explainPortFailure(port.path())),
              "The port can be opened now | Try again | " + port.path());
    EXPECT_EQ(::flock(port.otherProgram(), LOCK_EX | LOCK_NB), 0) << "closed again";
}

TEST(SerialPort, MissingPortIsGone)
{
    EXPECT_THAT(textOf(host::explainPortFailure("/dev/no such port")),
                HasSubstr("The port is gone | Plug"));
    for (const int error : {ENOENT, ENODEV, ENXIO})
        EXPECT_EQ(*host::explainPortFailure("/dev/x", error).description(), "The port is gone");
}

TEST(SerialPort, FileIsNotASerialPort)
{
    const support::TemporaryFolder folder;
    EXPECT_EQ(*host::explainPortFailure(folder.put("file", "")).description(),
              "This is not a serial port");
}

TEST(SerialPort, AnyOtherFailureHasTheTextOfTheSystem)
{
    EXPECT_THAT(textOf(host::explainPortFailure("/dev/x", EIO)),
                HasSubstr("The port cannot be opened: Input/output error"));
}

// A file of another user. Opening it fails before its type is checked.
class RefusedPort : public testing::Test {
protected:
    RefusedPort()
    {
        if (::geteuid() != 0)
            skip_ = true;
    }

    std::string refusalOf(mode_t mode, gid_t group) const
    {
        const auto path = folder_.put("port", "");
        EXPECT_EQ(::chown(path.c_str(), 0, group), 0);
        EXPECT_EQ(::chmod(path.c_str(), mode), 0);
        const support::AsNobody nobody;
        return textOf(host::explainPortFailure(path));
    }

    bool skip_ = false;
    support::TemporaryFolder folder_;
};

TEST_F(RefusedPort, AdviceForAPortOfAGroupIsToJoinIt)
{
    if (skip_)
        GTEST_SKIP() << "needs root, to give a file away";
    const auto* const dialout = ::getgrnam("dialout");
    ASSERT_NE(dialout, nullptr);
    EXPECT_THAT(refusalOf(0660, dialout->gr_gid),
                AllOf(HasSubstr("You do not have permission to use the port"),
                      HasSubstr("the group dialout"),
                      HasSubstr("\"sudo usermod -aG dialout nobody\", then log out and in again")));
}

TEST_F(RefusedPort, AdviceForAPortThatOnlyItsOwnerMayOpenIsToAskTheAdministrator)
{
    if (skip_)
        GTEST_SKIP() << "needs root, to give a file away";
    for (const mode_t mode : {0600U, 0620U, 0640U})
        EXPECT_THAT(refusalOf(mode, 0), AllOf(HasSubstr("Only its owner may use it"),
                                              testing::Not(HasSubstr("usermod"))));
}

TEST(SerialPort, MemberOfTheGroupHasToLogInAgain)
{
    std::array names{std::string{"anna"}, std::string{"bert"}};
    std::array<char*, 3> members{names[0].data(), names[1].data(), nullptr};
    ::group owner{};
    std::string name = "dialout";
    owner.gr_name = name.data();
    owner.gr_mem = members.data();
    for (const char* const user : {"anna", "bert"})
        EXPECT_THAT(host::permissionAdvice(&owner, user),
                    AllOf(HasSubstr("You joined this group after you logged in"),
                          testing::Not(HasSubstr("usermod"))));
    for (const char* const user : {"ann", "berta", ""})
        EXPECT_THAT(host::permissionAdvice(&owner, user),
                    HasSubstr("\"sudo usermod -aG dialout " + std::string{user} + '"'));
}

TEST(SerialPort, OnlyAnErrorWithoutADescriptionGetsOne)
{
    const gps::Error reported{"some", -1, {{gps::kErrorDescriptionKey, "Closed"}}};
    EXPECT_EQ(host::describeSerialError(reported, "/dev/x"), reported);
    const auto described = host::describeSerialError({"some", -4}, "/dev/x");
    EXPECT_EQ(described.domain(), "some");
    EXPECT_EQ(described.code(), -4);
    EXPECT_THAT(textOf(described), HasSubstr("broke off (error -4) | Check the cable"));
}

} // namespace
