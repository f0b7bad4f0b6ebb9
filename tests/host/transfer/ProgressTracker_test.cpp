// SPDX-License-Identifier: MIT

#include "host/transfer/ProgressTracker.h"

#include "support/TemporaryFolder.h"

#include <platform/System/FileManager.h>

#include <gmock/gmock.h>

#include <vector>

namespace {

using gps::TransferKind;
using host::EventKind;
using host::ProgressTracker;
using host::TransferPhase;
using host::TransferProgress;

class ProgressTrackerTest : public testing::Test {
protected:
    /// Reports until the tracker's interval is over, so that the last report has all counts.
    const TransferProgress& afterInterval()
    {
        const auto before = reports_.size();
        while (reports_.size() == before)
            tracker_.consume({});
        return reports_.back();
    }

    static std::vector<host::Event> batchOf(const std::vector<EventKind>& kinds)
    {
        std::vector<host::Event> batch;
        for (const auto kind : kinds) {
            auto& event = batch.emplace_back();
            event.kind = kind;
            event.transfer = TransferKind::kRoutes;
        }
        return batch;
    }

    std::vector<TransferProgress> reports_;
    ProgressTracker tracker_{
        [this](const TransferProgress& progress) { reports_.push_back(progress); }};
};

TEST_F(ProgressTrackerTest, BeginIsReportedAtOnceWithItsLocation)
{
    tracker_.begin(TransferPhase::kLookingForReceiver, "/dev/some");
    ASSERT_EQ(reports_.size(), 1U);
    EXPECT_EQ(reports_[0].phase, TransferPhase::kLookingForReceiver);
    EXPECT_EQ(reports_[0].location, "/dev/some");
    EXPECT_EQ(reports_[0].records, 0U);
}

TEST_F(ProgressTrackerTest, PointsOfEitherSortAreCountedAsRecordsOfTheirTransfer)
{
    tracker_.begin(TransferPhase::kReading);
    tracker_.consume(batchOf({EventKind::kWayPoint, EventKind::kStartTransfer, EventKind::kNewRoute,
                              EventKind::kWayPoint, EventKind::kTrackPoint}));
    const auto& progress = afterInterval();
    EXPECT_EQ(progress.phase, TransferPhase::kTransferring);
    EXPECT_EQ(progress.kind, TransferKind::kRoutes);
    EXPECT_EQ(progress.records, 2U) << "counts start at zero with each phase";
    EXPECT_GE(progress.elapsed.count(), 0);
}

TEST_F(ProgressTrackerTest, SendingIsATransferToo)
{
    tracker_.begin(TransferPhase::kSending);
    tracker_.consume(batchOf({EventKind::kStartSending}));
    EXPECT_EQ(afterInterval().phase, TransferPhase::kTransferring);
}

TEST_F(ProgressTrackerTest, WithoutASerialLineThePhaseLastsPastTheEndOfATransfer)
{
    tracker_.begin(TransferPhase::kReading);
    tracker_.consume(batchOf({EventKind::kStartTransfer, EventKind::kEndTransfer}));
    const auto& progress = afterInterval();
    EXPECT_EQ(progress.phase, TransferPhase::kTransferring);
    EXPECT_EQ(progress.traffic.bitsPerSecond, 0);
}

TEST_F(ProgressTrackerTest, NoTransferIsShownBeforeAReceiverHasAnswered)
{
    bool isAnswered = false;
    tracker_.begin(TransferPhase::kLookingForReceiver, "/dev/some", [&] { return isAnswered; });
    tracker_.consume(batchOf({EventKind::kStartTransfer, EventKind::kEndTransfer}));
    EXPECT_EQ(afterInterval().phase, TransferPhase::kLookingForReceiver);
    isAnswered = true;
    tracker_.consume(batchOf({EventKind::kStartTransfer}));
    EXPECT_EQ(afterInterval().phase, TransferPhase::kTransferring);
}

TEST_F(ProgressTrackerTest, BatchesWithinTheIntervalAreNotReported)
{
    tracker_.begin(TransferPhase::kReading);
    const auto start = std::chrono::steady_clock::now();
    (void)afterInterval();
    EXPECT_GE(std::chrono::steady_clock::now() - start, ProgressTracker::kInterval / 2);
}

TEST_F(ProgressTrackerTest, WhatIsReadOfAFileIsReportedNowAndThen)
{
    tracker_.begin(TransferPhase::kReadingFile, "a.gpx");
    EXPECT_EQ(reports_.back().totalBytes, 0U);
    while (reports_.size() == 1)
        tracker_.read(5, 10);
    EXPECT_EQ(reports_.back().bytes, 5U);
    EXPECT_EQ(reports_.back().totalBytes, 10U);
    tracker_.begin(TransferPhase::kReadingDevice);
    EXPECT_EQ(reports_.back().totalBytes, 0U);
}

TEST_F(ProgressTrackerTest, WritesOfFilesAreReportedUpToTheAnnouncedTotal)
{
    const support::TemporaryFolder folder;
    const auto write = [&folder](std::size_t size) {
        EXPECT_FALSE(
            gps::FileManager{}.writeAsciiFileAtomically(folder.path("a"), std::string(size, 'x')));
    };
    write(7); // before the phase
    tracker_.begin(TransferPhase::kSending);
    tracker_.expectWrites(100);
    EXPECT_EQ(afterInterval().bytes, 0U);
    write(60);
    tracker_.consume(batchOf({EventKind::kStartSending}));
    const auto progress = afterInterval();
    EXPECT_EQ(progress.bytes, 60U);
    EXPECT_EQ(progress.totalBytes, 100U);
    write(60);
    EXPECT_EQ(afterInterval().bytes, 100U);
}

TEST_F(ProgressTrackerTest, FinishIsReportedAtOnceWithoutCounts)
{
    tracker_.begin(TransferPhase::kLookingForReceiver, "/dev/some");
    tracker_.finish();
    ASSERT_EQ(reports_.size(), 2U);
    EXPECT_EQ(reports_[1].phase, TransferPhase::kFinished);
    EXPECT_EQ(reports_[1].location, "");
}

TEST(ProgressTracker, DoesNothingWithoutACallback)
{
    ProgressTracker tracker{{}};
    tracker.begin(TransferPhase::kReading);
    tracker.consume({});
    tracker.finish();
}

} // namespace
