// SPDX-License-Identifier: MIT
// The receiver's end of a pseudo-terminal: opening, speeds, pacing.

#include "simulator/LineClient.h"

#include <tools/simulator/Wire.h>

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

#include <termios.h>

namespace {

using simulator::Clock;
using support::LineClient;

TEST(Wire, IsOpenWhileTheOtherSideHasItOpen)
{
    simulator::Wire wire{false};
    wire.read();
    EXPECT_FALSE(wire.isOpen());
    {
        const LineClient client{wire.path(), B9600};
        wire.read();
        EXPECT_TRUE(wire.isOpen());
        EXPECT_EQ(wire.otherSpeed(), 9600);
    }
    wire.read();
    EXPECT_FALSE(wire.isOpen());
}

TEST(Wire, LinesArriveWithoutTheirLineFeeds)
{
    simulator::Wire wire{false};
    const LineClient client{wire.path(), B4800};
    client.write("one\r\ntwo\nthr");
    wire.read();
    EXPECT_EQ(wire.nextLine()->text, "one\r");
    EXPECT_EQ(wire.nextLine()->text, "two");
    EXPECT_FALSE(wire.nextLine());
    client.write("ee\n");
    wire.read();
    const auto line = wire.nextLine();
    EXPECT_EQ(line->text, "three");
    EXPECT_EQ(line->speed, 4800);
}

TEST(Wire, PacedLineArrivesNoEarlierThanItsLastByte)
{
    simulator::Wire wire{true};
    const LineClient client{wire.path(), B1200};
    const auto start = Clock::now();
    client.write("12345678901\n"); // 12 bytes of 10 bits at 1200 bits per second: 100 ms
    wire.read();
    std::optional<simulator::ArrivedLine> line;
    while (!(line = wire.nextLine()))
        wire.wait(Clock::now() + std::chrono::seconds{1}, -1);
    EXPECT_GE(line->when - start, std::chrono::milliseconds{100});
    EXPECT_GE(Clock::now(), line->when);
}

TEST(Wire, SentBytesReachTheOtherSideAtItsOwnSpeedOnly)
{
    simulator::Wire wire{false};
    LineClient client{wire.path(), B4800};
    wire.read();
    wire.send("lost\r\n", Clock::now(), 9600);
    while (!wire.write())
        wire.wait(Clock::now() + std::chrono::seconds{1}, -1);
    wire.send("heard\r\n", Clock::now(), 4800);
    while (!wire.write())
        wire.wait(Clock::now() + std::chrono::seconds{1}, -1);
    EXPECT_EQ(client.line(), "heard");
}

TEST(Wire, ClearDropsWhatHasNotArrived)
{
    simulator::Wire wire{true};
    const LineClient client{wire.path(), B1200};
    client.write("late\npart");
    wire.read();
    wire.clear();
    EXPECT_FALSE(wire.nextLine());
    client.write("ial\n");
    wire.read();
    std::optional<simulator::ArrivedLine> line;
    while (!(line = wire.nextLine()))
        wire.wait(Clock::now() + std::chrono::seconds{1}, -1);
    EXPECT_EQ(line->text, "ial");
}

} // namespace
