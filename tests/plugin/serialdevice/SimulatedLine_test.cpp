// SPDX-License-Identifier: MIT
// The line that the tests of sessions trust.

#include "SimulatedLine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace support {
namespace {

using simulator::LogKind;

constexpr char kVersion[] = "$PMGNCMD,VERSION*28\r\n";
constexpr char kVersionReply[] = "$PMGNVER,017,1.00,SIMULATED RECEIVER*33";

/// A receiver whose line is open at its speed, 4800 bits per second.
struct Open {
    explicit Open(simulator::Settings settings = {}) : receiver(std::move(settings))
    {
        EXPECT_EQ(line.openWithDevicePath("/dev/simulated"), 0);
    }

    void send(std::string_view text) { line.sendString(text, gps::StringEncoding::kASCII); }
    std::optional<std::string> read(float seconds = 1.0F)
    {
        return line.readStringTo("\r\n", seconds);
    }
    [[nodiscard]] double seconds() const
    {
        return std::chrono::duration<double>(receiver.now - start).count();
    }

    SimulatedReceiver receiver;
    SimulatedLine line{receiver};
    simulator::Clock::time_point start = receiver.now;
};

std::vector<LogKind> kindsOf(const SimulatedReceiver& receiver)
{
    std::vector<LogKind> kinds;
    for (const auto& entry : receiver.log.entries())
        kinds.push_back(entry.kind);
    return kinds;
}

TEST(SimulatedLine, LetsTimePassOnlyWhileItIsReadWithoutSuccess)
{
    Open open;
    EXPECT_EQ(open.read(), std::nullopt);
    EXPECT_DOUBLE_EQ(open.seconds(), 1);
    open.send(kVersion);
    EXPECT_DOUBLE_EQ(open.seconds(), 1);
    EXPECT_EQ(open.read(), kVersionReply);
    // 21 bytes to the receiver and 41 from it, of 10 bits each.
    EXPECT_NEAR(open.seconds(), 1 + (21 + 41) * 10 / 4800.0, 1e-6);
}

TEST(SimulatedLine, TakesNoTimeUnlessItIsPaced)
{
    Open open{{.paced = false}};
    open.send(kVersion);
    EXPECT_EQ(open.read(0), kVersionReply);
    EXPECT_DOUBLE_EQ(open.seconds(), 0);
}

TEST(SimulatedLine, KeepsWhatArrivedInPart)
{
    constexpr float kTwoThirds = (21 + 27) * 10 / 4800.0F;
    Open open;
    open.send(kVersion);
    EXPECT_EQ(open.read(kTwoThirds), std::nullopt);
    EXPECT_EQ(open.read(), kVersionReply);
}

TEST(SimulatedLine, LosesWhatIsSentAtAnotherSpeedInBothDirections)
{
    Open open;
    open.line.setBaudRate(9600);
    open.send(kVersion);
    EXPECT_EQ(open.read(), std::nullopt);
    open.line.setBaudRate(4800);
    open.send(kVersion);
    EXPECT_EQ(open.read(0.06F), std::nullopt); // the receiver has begun to answer
    open.line.setBaudRate(9600);
    EXPECT_EQ(open.read(), std::nullopt);
    EXPECT_EQ(kindsOf(open.receiver),
              (std::vector{LogKind::kOpened, LogKind::kSpeed, LogKind::kSpeed, LogKind::kUnreadable,
                           LogKind::kSpeed, LogKind::kReceived, LogKind::kSpeed, LogKind::kSent}));
}

TEST(SimulatedLine, SendsPendingOutputBeforeAChangeOfSpeed)
{
    Open open;
    open.send(kVersion);
    open.line.setBaudRate(9600);
    EXPECT_EQ(kindsOf(open.receiver).back(), LogKind::kSpeed);
    EXPECT_EQ(kindsOf(open.receiver).end()[-2], LogKind::kReceived);
}

TEST(SimulatedLine, ReturnsTheEndOfALongText)
{
    Open open{{.speed = 4800, .faults = {*simulator::parseFault("version:long")}}};
    open.send(kVersion);
    const auto text = open.read(300.0F); // 100,000 bytes
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), 4096U);
}

TEST(SimulatedLine, FailsOnceTheReceiverIsUnplugged)
{
    Open open;
    open.receiver.unpluggedAfter = 1;
    open.send(kVersion);
    EXPECT_THROW((void)open.read(), gps::SerialFailure);
    EXPECT_THROW((void)open.read(), gps::SerialFailure);
    EXPECT_THROW(open.line.setBaudRate(9600), gps::SerialFailure);
    open.line.close();
    EXPECT_EQ(kindsOf(open.receiver),
              (std::vector{LogKind::kOpened, LogKind::kSpeed, LogKind::kReceived, LogKind::kHungUp,
                           LogKind::kClosed}));
}

} // namespace
} // namespace support
