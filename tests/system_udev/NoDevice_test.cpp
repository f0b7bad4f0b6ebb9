// SPDX-License-Identifier: MIT
// The built program on a machine without volumes and serial ports. The device tree is mocked, since
// the machine that runs the tests may have some.

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include <platform_udev/Testbed.h>
#include <system/Program.h>
#include <system/Receiver.h>
#include <system/StoredPorts.h>

namespace {

using support::magellangps;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

class NoDevice : public testing::Test {
protected:
    const support::Testbed testbed_;
    const support::TemporaryFolder folder_;
};

TEST_F(NoDevice, NothingReadyIsStatus3AndNoFile)
{
    const auto ran =
        magellangps({"acquire", "--test-folder", folder_.path(), "-o", folder_.path("a.gpx")});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.out, IsEmpty());
    // What is mounted on the machine that runs the tests may come between.
    EXPECT_THAT(ran.err,
                AllOf(StartsWith("magellangps: No receiver is mounted. Looked at: "),
                      HasSubstr(folder_.path() + " (it has no file USBTRANS/UNIT_ID.DAT, so it is "
                                                 "not a receiver)"),
                      EndsWith(". Connect a receiver and wait until it is mounted; \"magellangps "
                               "devices --explain\" shows more.\n")));
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(NoDevice, SendAndRestoreAreStatus3)
{
    const auto trip = folder_.put(
        "trip.gpx",
        "<gpx version=\"1.1\"><wpt lat=\"46.5\" lon=\"7.25\"><name>A</name></wpt></gpx>");
    EXPECT_EQ(magellangps({"send", trip}).status, 3);
    EXPECT_EQ(magellangps({"restore"}).status, 3);
}

TEST_F(NoDevice, JsonIsOneDocumentWithTheStatus)
{
    const auto trip = folder_.put("trip.gpx", "<gpx version=\"1.1\"/>");
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"acquire", "--json"}, {"send", trip, "--json"}, {"restore", "--json"}}) {
        const auto ran = magellangps(words);
        EXPECT_EQ(ran.status, 3);
        EXPECT_THAT(ran.out,
                    MatchesRegex("\\{\"status\":3,[^\n]*No receiver is mounted[^\n]*\\}\n"));
        EXPECT_THAT(ran.err, HasSubstr("No receiver is mounted"));
    }
}

TEST_F(NoDevice, SerialDriverIsOfferedOnlyForANamedPort)
{
    const auto without = magellangps({"acquire", "--driver", "magellan-serial"});
    EXPECT_EQ(without.status, 3);
    EXPECT_THAT(without.err, HasSubstr("only while there is a port"));
    EXPECT_EQ(
        magellangps({"acquire", "--driver", "magellan-serial", "--device", "/dev/gone"}).status, 1);
}

TEST_F(NoDevice, DevicesExplainWhatWasSearched)
{
    EXPECT_EQ(magellangps({"--test-folder", folder_.path(), "devices"}).out,
              "No mounted receiver and no serial port was found.\n");
}

TEST_F(NoDevice, DevicesOfBothDriversAreATable)
{
    const support::Receiver receiver;
    const support::How how{.environment = {support::storePorts(folder_, {"/dev/x"})}};
    EXPECT_EQ(magellangps({"devices", "--test-folder", receiver.path()}, how).out,
              "   Driver           Device              Authorized  Location\n"
              "*  magellan         Magellan device 42  yes         " +
                  receiver.path() +
                  "\n*  magellan-serial  /dev/x                          /dev/x\n");
}

} // namespace
