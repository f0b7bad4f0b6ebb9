// SPDX-License-Identifier: MIT

#include "host/bundle/SerialPort.h"

#include "support/AsNobody.h"
#include "support/PseudoTerminal.h"
#include "support/TemporaryFolder.h"
#include "support/TestPorts.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>

#include <grp.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::string textOf(const gps::Error& error)
{
    return *error.description() + " | " + *error.suggestion() + " | " + *error.path();
}

TEST(SerialPort, PlaceIsACharacterDeviceALinkToOneOrOneThatIsGone)
{
    const support::TemporaryFolder folder;
    const support::PseudoTerminal port;
    std::filesystem::create_symlink(port.path(), folder.path("link"));
    std::filesystem::create_symlink("nowhere", folder.path("dangling"));
    for (const auto& place : {port.path(), folder.path("link"), std::string{"/dev/null"},
                              std::string{"/dev/no such port"}})
        EXPECT_TRUE(host::isSerialPlace(place)) << place;
    for (const auto& place :
         {folder.path(), folder.put("file", ""), folder.path("gone"), folder.path("dangling"),
          std::string{"/dev"}, std::string{"/dev/shm"}, std::string{}})
        EXPECT_FALSE(host::isSerialPlace(place)) << place;
}

TEST(SerialPort, UsedPortComesAfterThoseThatAreThere)
{
    const support::TestPorts ports{{"/dev/stored"}};
    host::useSerialPort("/dev/mine");
    EXPECT_THAT(*gps::UserDefaults::standard().stringArrayForKey(gps::kTestPortsKey),
                ElementsAre("/dev/stored", "/dev/mine"));
}

TEST(SerialPort, BusyOneIsTheOtherProgramsToClose)
{
    const support::PseudoTerminal port;
    ASSERT_EQ(::flock(port.otherProgram(), LOCK_EX), 0);
    EXPECT_THAT(textOf(host::whyPortFails(port.path())),
                AllOf(HasSubstr("Another program has the port open | Close that program"),
                      HasSubstr("fuser -v " + port.path())));
}

TEST(SerialPort, OneThatOpensCanBeTriedAgain)
{
    const support::PseudoTerminal port;
    EXPECT_EQ(textOf(host::whyPortFails(port.path())),
              "The port can be opened now | Try again | " + port.path());
    EXPECT_EQ(::flock(port.otherProgram(), LOCK_EX | LOCK_NB), 0) << "closed again";
}

TEST(SerialPort, OneThatIsNotThereIsGone)
{
    EXPECT_THAT(textOf(host::whyPortFails("/dev/no such port")),
                HasSubstr("The port is gone | Plug"));
    for (const int error : {ENOENT, ENODEV, ENXIO})
        EXPECT_EQ(*host::whyPortFails("/dev/x", error).description(), "The port is gone");
}

TEST(SerialPort, FileIsNoSerialPort)
{
    const support::TemporaryFolder folder;
    EXPECT_EQ(*host::whyPortFails(folder.put("file", "")).description(), "This is no serial port");
}

TEST(SerialPort, AnyOtherRefusalHasTheSystemsWords)
{
    EXPECT_THAT(textOf(host::whyPortFails("/dev/x", EIO)),
                HasSubstr("The port cannot be opened: Input/output error"));
}

// A file of another user's, which opening meets before it asks what it is.
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
        return textOf(host::whyPortFails(path));
    }

    bool skip_ = false;
    support::TemporaryFolder folder_;
};

TEST_F(RefusedPort, OneOfAGroupSaysHowToJoinIt)
{
    if (skip_)
        GTEST_SKIP() << "needs root, to give a file away";
    const auto* const dialout = ::getgrnam("dialout");
    ASSERT_NE(dialout, nullptr);
    EXPECT_THAT(
        refusalOf(0660, dialout->gr_gid),
        AllOf(HasSubstr("You have no permission to use the port"), HasSubstr("the group dialout"),
              HasSubstr("\"sudo usermod -aG dialout nobody\", then log out, and in again")));
}

TEST_F(RefusedPort, OneOfItsOwnerAloneIsAMatterOfTheAdministrator)
{
    if (skip_)
        GTEST_SKIP() << "needs root, to give a file away";
    for (const mode_t mode : {0600U, 0620U, 0640U})
        EXPECT_THAT(refusalOf(mode, 0),
                    AllOf(HasSubstr("for its owner alone"), testing::Not(HasSubstr("usermod"))));
}

TEST(SerialPort, OnlyAnErrorWithoutWordsGetsSome)
{
    const gps::Error told{"some", -1, {{gps::kErrorDescriptionKey, "Closed"}}};
    EXPECT_EQ(host::inWords(told, "/dev/x"), told);
    const auto wordless = host::inWords({"some", -4}, "/dev/x");
    EXPECT_EQ(wordless.domain(), "some");
    EXPECT_EQ(wordless.code(), -4);
    EXPECT_THAT(textOf(wordless), HasSubstr("broke off (error -4) | Check the cable"));
}

} // namespace
