// SPDX-License-Identifier: MIT
// The bounds of an account, and when it is published.

#include <gps/Error.h>
#include <plugin/common/OperationAccount.h>
#include <plugin/common/OperationMonitor.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <utility>

namespace magellan {
namespace {

constexpr auto kMost = gps::TransferAccount::kMostDetails;

TEST(OperationAccount, IsPublishedAtItsEndAndNotBefore)
{
    OperationMonitor monitor;
    {
        OperationAccount account{monitor};
        account.setStopped();
        EXPECT_FALSE(monitor.account().stopped);
    }
    EXPECT_TRUE(monitor.account().stopped);
}

TEST(OperationAccount, BeginsWithWhatTheHostThreadCouldNotSee)
{
    OperationMonitor monitor;
    monitor.addUnseen({"device", "/x", gps::Error{"domain", 1}});
    {
        OperationAccount account{monitor};
        account.addUnseen("tracks", "/y", gps::Error{"domain", 2});
    }
    ASSERT_EQ(monitor.account().unseen.size(), 2U);
    EXPECT_EQ(monitor.account().unseen[0].path, "/x");
    EXPECT_EQ(monitor.account().unseen[1].kind, "tracks");
}

TEST(OperationAccount, HasAThousandElementsOfEachSortAndCountsTheRest)
{
    OperationMonitor monitor;
    const auto omittedAfter = [&](std::size_t elements) {
        monitor.begin();
        {
            OperationAccount account{monitor};
            for (std::size_t i = 0; i < elements; ++i) {
                account.addUnseen("tracks", "/x", gps::Error{"domain", 1});
                account.addCommand("PMGNCMD,TON", gps::CommandPurpose::kTransfer).attempts = 1;
            }
        }
        EXPECT_EQ(monitor.account().unseen.size(), kMost);
        EXPECT_EQ(monitor.account().commands.size(), kMost);
        return monitor.account().omitted;
    };
    EXPECT_EQ(omittedAfter(kMost), 0U);
    EXPECT_EQ(omittedAfter(kMost + 1), 2U);
}

TEST(OperationAccount, HasOnePhaseOfAKind)
{
    OperationMonitor monitor;
    {
        OperationAccount account{monitor};
        (void)account.phase("tracks");
        account.phase("waypoints").end = gps::PhaseEnd::kSilence;
        account.phase("tracks").end = gps::PhaseEnd::kEnd;
    }
    const auto phases = monitor.account().phases;
    ASSERT_EQ(phases.size(), 2U);
    EXPECT_EQ(phases[0].end, gps::PhaseEnd::kEnd);
    EXPECT_EQ(phases[1].end, gps::PhaseEnd::kSilence);
}

TEST(OperationAccount, TheTotalOfAKindHasItsFirstError)
{
    OperationMonitor monitor;
    {
        OperationAccount account{monitor};
        account.addFile({.kind = "tracks", .path = "/a"});
        account.addFile({.kind = "tracks", .path = "/b", .error = gps::Error{"domain", 1}});
        account.addFile({.kind = "tracks", .path = "/c", .error = gps::Error{"domain", 2}});
    }
    const auto totals = monitor.account().totals;
    ASSERT_EQ(totals.size(), 1U);
    EXPECT_EQ(totals[0].error, (gps::Error{"domain", 1}));
    EXPECT_EQ(totals[0].path, "");
}

TEST(OperationMonitor, BeginForgetsTheLastOperation)
{
    OperationMonitor monitor;
    monitor.requestStop();
    monitor.hear(gps::LineVoice::kReceiver);
    monitor.addUnseen({"device", "/x", gps::Error{"domain", 1}});
    EXPECT_TRUE(monitor.stopRequested());
    monitor.begin();
    EXPECT_FALSE(monitor.stopRequested());
    EXPECT_EQ(monitor.voice(), gps::LineVoice::kNothing);
    EXPECT_TRUE(monitor.account().unseen.empty());
}

TEST(OperationMonitor, KeepsTheBestVoice)
{
    using gps::LineVoice;
    OperationMonitor monitor;
    for (const auto& [heard, kept] : {std::pair{LineVoice::kNoise, LineVoice::kNoise},
                                      {LineVoice::kNothing, LineVoice::kNoise},
                                      {LineVoice::kNmea, LineVoice::kNmea},
                                      {LineVoice::kNoise, LineVoice::kNmea},
                                      {LineVoice::kReceiver, LineVoice::kReceiver},
                                      {LineVoice::kNmea, LineVoice::kReceiver}}) {
        monitor.hear(heard);
        EXPECT_EQ(monitor.voice(), kept);
    }
}

} // namespace
} // namespace magellan
