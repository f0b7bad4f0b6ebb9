// SPDX-License-Identifier: MIT

#include "PrivateMount.h"

#include <platform/System/DeviceMonitor.h>
#include <support/Alarms.h>
#include <support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>

#include <unistd.h>

namespace gps {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using support::Alarms;

TEST(DeviceMonitor, WithoutAChangeTheWaitLastsAsLongAsGiven)
{
    DeviceMonitor monitor;
    for (const auto limit : {0ms, 30ms}) {
        const auto start = Clock::now();
        const auto changes = monitor.wait(limit);
        EXPECT_GE(Clock::now() - start, limit);
        EXPECT_FALSE(changes.volumes);
        EXPECT_FALSE(changes.serialPorts);
        EXPECT_FALSE(changes.interrupted);
    }
}

TEST(DeviceMonitor, InputOnTheWakeUpFileEndsTheWait)
{
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    DeviceMonitor monitor{pipe[0]};
    EXPECT_FALSE(monitor.wait(0ms).interrupted);
    ASSERT_EQ(::write(pipe[1], "x", 1), 1);
    const auto changes = monitor.wait(-1ms);
    EXPECT_TRUE(changes.interrupted);
    EXPECT_FALSE(changes.volumes);
    EXPECT_FALSE(changes.serialPorts);
    ::close(pipe[0]);
    ::close(pipe[1]);
}

TEST(DeviceMonitor, AMountAndAnUnmountAreReportedOnceEach)
{
    const support::TemporaryFolder outer;
    const support::PrivateMount own{outer.path(),
                                    ""}; // from now on this process has its own mount table
    if (!own.isMounted())
        GTEST_SKIP() << "mounting is not permitted";
    const auto inside = outer.makeFolder("inside");
    DeviceMonitor monitor;
    {
        const support::PrivateMount volume{inside, ""};
        EXPECT_TRUE(monitor.wait(10s).volumes);
        EXPECT_FALSE(monitor.wait(0ms).volumes);
    }
    const auto changes = monitor.wait(10s);
    EXPECT_TRUE(changes.volumes);
    EXPECT_FALSE(changes.serialPorts);
    EXPECT_FALSE(monitor.wait(0ms).volumes);
}

TEST(DeviceMonitor, AfterAChangeItWaitsForMoreButNoLongerThanTheLimit)
{
    const support::TemporaryFolder outer;
    const support::PrivateMount own{outer.path(), ""};
    if (!own.isMounted())
        GTEST_SKIP() << "mounting is not permitted";
    const auto inside = outer.makeFolder("inside");
    DeviceMonitor monitor;
    const auto waitForMount = [&](std::chrono::milliseconds limit) {
        const support::PrivateMount volume{inside, ""};
        const auto start = Clock::now();
        EXPECT_TRUE(monitor.wait(limit).volumes);
        return Clock::now() - start;
    };
    const auto gathered = waitForMount(10s);
    EXPECT_GE(gathered, 200ms);
    EXPECT_LT(gathered, 5s);
    const auto shortest = std::min(
        {waitForMount(20ms), waitForMount(20ms), waitForMount(20ms)}); // a busy machine may be late
    EXPECT_LT(shortest, 190ms);
}

TEST(DeviceMonitor, ASignalEndsAnUnlimitedWait)
{
    DeviceMonitor monitor;
    const Alarms alarms;
    const auto changes = monitor.wait(-1ms);
    EXPECT_TRUE(changes.interrupted);
    EXPECT_FALSE(changes.volumes);
}

} // namespace
} // namespace gps
