// SPDX-License-Identifier: MIT
// Progress on a terminal, with the built program.

#include "system/Receiver.h"
#include "system/Terminal.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <unistd.h>

namespace {

using support::magellangps;
using support::Receiver;
using support::Terminal;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kWiped = "\r\033[K";

TEST(Progress, TerminalShowsALineThatIsWipedAtTheEnd)
{
    const Receiver receiver;
    const Terminal terminal;
    EXPECT_EQ(magellangps({"acquire", "--device", receiver.path()}, terminal.forErrors()).status,
              0);
    EXPECT_THAT(terminal.readTo(kWiped), AllOf(HasSubstr("reading"), EndsWith(kWiped)));
}

TEST(Progress, SendShowsItsPhases)
{
    const Receiver receiver;
    const Terminal terminal;
    const auto trip = receiver.put(
        "t.gpx", "<gpx version=\"1.1\"><wpt lat=\"46.5\" lon=\"7.25\"><name>A</name></wpt></gpx>");
    EXPECT_EQ(magellangps({"send", trip, "--device", receiver.path()}, terminal.forErrors()).status,
              0);
    for (const auto* const phase :
         {"reading t.gpx", "reading the device", "making a backup", "sending", "reading back"})
        EXPECT_THAT(terminal.readTo(phase), EndsWith(phase));
    EXPECT_THAT(terminal.readTo(kWiped), EndsWith(kWiped));
}

TEST(Progress, NothingIsShownWhenTheTerminalHasOtherOutput)
{
    const Receiver receiver;
    for (const auto* const option : {"-q", "-v"}) {
        const Terminal terminal;
        EXPECT_EQ(
            magellangps({"acquire", "--device", receiver.path(), option}, terminal.forErrors())
                .status,
            0);
        (void)!::write(terminal.otherProgram(), kWiped.data(), kWiped.size());
        EXPECT_THAT(terminal.readTo(kWiped), Not(HasSubstr("reading")));
    }
}

TEST(Progress, NothingIsShownOnATerminalThatCannotOverprint)
{
    const Receiver receiver;
    const Terminal terminal;
    auto how = terminal.forErrors();
    how.environment = {"TERM=dumb"};
    EXPECT_EQ(magellangps({"acquire", "--device", receiver.path()}, how).status, 0);
    (void)!::write(terminal.otherProgram(), kWiped.data(), kWiped.size());
    EXPECT_EQ(terminal.readTo(kWiped), kWiped);
}

TEST(Progress, BlockedTerminalDoesNotStopTheProgram)
{
    const Receiver receiver;
    const Terminal terminal;
    ASSERT_EQ(::fcntl(terminal.otherProgram(), F_SETFL, O_NONBLOCK), 0);
    while (::write(terminal.otherProgram(), "full", 4) > 0) {
    }
    EXPECT_EQ(magellangps({"acquire", "--device", receiver.path()}, terminal.forErrors()).status,
              0); // would hang if it waited for the terminal
}

} // namespace
