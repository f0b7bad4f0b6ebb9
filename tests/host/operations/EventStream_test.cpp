// SPDX-License-Identifier: MIT

#include "host/operations/EventStream.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using gps::TransferKind;
using host::EventKind;
using host::EventStream;

TEST(EventStream, EveryCallIsDeliveredInOrderWithItsArguments)
{
    EventStream stream;
    const gps::GPSPoint point{1, 2, 3, 4, 5};
    stream.gpsStateChange(1);
    stream.startTransfer(TransferKind::kRoutes);
    stream.newRoute({{"name", "R"}});
    stream.wayPoint(point, {{"name", "W"}});
    stream.endTransfer(TransferKind::kRoutes);
    stream.newTrack({{"name", "T"}});
    stream.trackPoint(point, {{"trackName", "T"}});
    stream.startSending("Tracks", TransferKind::kTracks);
    stream.endSending(TransferKind::kTracks);
    stream.error({"some", -4});
    stream.gpsStateChange(0);

    host::EventBatch batch;
    ASSERT_TRUE(stream.next(batch));
    ASSERT_EQ(batch.size(), 11U);
    const auto* event = batch.begin();
    EXPECT_EQ(event[0].kind, EventKind::kStateChange);
    EXPECT_EQ(event[0].state, 1);
    EXPECT_EQ(event[1].kind, EventKind::kStartTransfer);
    EXPECT_EQ(event[1].transfer, TransferKind::kRoutes);
    EXPECT_EQ(event[2].kind, EventKind::kNewRoute);
    EXPECT_EQ(event[2].record, (gps::Dictionary{{"name", "R"}}));
    EXPECT_EQ(event[3].kind, EventKind::kWayPoint);
    EXPECT_EQ(event[3].point, point);
    EXPECT_EQ(event[3].record, (gps::Dictionary{{"name", "W"}}));
    EXPECT_EQ(event[4].kind, EventKind::kEndTransfer);
    EXPECT_EQ(event[4].transfer, TransferKind::kRoutes);
    EXPECT_EQ(event[5].kind, EventKind::kNewTrack);
    EXPECT_EQ(event[5].record, (gps::Dictionary{{"name", "T"}}));
    EXPECT_EQ(event[6].kind, EventKind::kTrackPoint);
    EXPECT_EQ(event[6].point, point);
    EXPECT_EQ(event[6].record, (gps::Dictionary{{"trackName", "T"}}));
    EXPECT_EQ(event[7].kind, EventKind::kStartSending);
    EXPECT_EQ(event[7].label, "Tracks");
    EXPECT_EQ(event[7].transfer, TransferKind::kTracks);
    EXPECT_EQ(event[8].kind, EventKind::kEndSending);
    EXPECT_EQ(event[8].transfer, TransferKind::kTracks);
    EXPECT_EQ(event[9].kind, EventKind::kError);
    EXPECT_EQ(event[9].error->code(), -4);
    EXPECT_EQ(event[10].state, 0);
    EXPECT_FALSE(stream.next(batch));
    EXPECT_EQ(batch.size(), 0U);
}

TEST(EventStream, RecordIsCopiedSoTheDriverMayUseItsOwnAgain)
{
    EventStream stream;
    gps::Dictionary extras{{"name", "first"}};
    stream.wayPoint({}, extras);
    extras.set("name", "second");
    stream.wayPoint({}, extras);
    stream.gpsStateChange(0);
    host::EventBatch batch;
    ASSERT_TRUE(stream.next(batch));
    EXPECT_EQ(*batch.begin()[0].record.findString("name"), "first");
    EXPECT_EQ(*batch.begin()[1].record.findString("name"), "second");
}

TEST(EventStream, LongTextsEndABatchEarlyAndItIsNotReused)
{
    constexpr std::size_t kLong = 1 << 20;
    EventStream stream;
    host::EventBatch batch;
    for (int i = 0; i < 3; ++i) {
        stream.wayPoint({}, {{"comment", std::string(kLong, 'x')}});
        ASSERT_TRUE(stream.next(batch));
        EXPECT_EQ(batch.size(), 1U);
        EXPECT_TRUE(batch.isLarge());
    }
    stream.wayPoint({}, {{"comment", "short"}});
    stream.gpsStateChange(0);
    ASSERT_TRUE(stream.next(batch));
    EXPECT_FALSE(batch.isLarge());
}

TEST(EventStream, AlmostLongTextsDoNotEndABatch)
{
    EventStream stream;
    for (int i = 0; i < 3; ++i)
        stream.wayPoint({}, {{"comment", std::string(300'000, 'x')}});
    stream.gpsStateChange(0);
    host::EventBatch batch;
    ASSERT_TRUE(stream.next(batch));
    EXPECT_EQ(batch.size(), 4U);
}

TEST(EventStream, CallsAfterTheIdleReportAreDropped)
{
    EventStream stream;
    stream.gpsStateChange(0);
    stream.gpsStateChange(1);
    host::EventBatch batch;
    ASSERT_TRUE(stream.next(batch));
    EXPECT_EQ(batch.size(), 1U);
    EXPECT_FALSE(stream.next(batch));
}

TEST(EventStream, ClosingEndsTheStreamAfterItsLastEvent)
{
    EventStream stream;
    stream.startTransfer(TransferKind::kTracks);
    stream.close();
    stream.endTransfer(TransferKind::kTracks);
    host::EventBatch batch;
    ASSERT_TRUE(stream.next(batch));
    EXPECT_EQ(batch.size(), 1U);
    while (stream.next(batch))
        EXPECT_EQ(batch.size(), 0U);
}

TEST(EventStream, ClosingReleasesADriverThatWaitsForTheConsumer)
{
    constexpr std::size_t kMost = EventStream::kBatchSize * EventStream::kMostBatches;
    EventStream stream;
    std::atomic<std::size_t> sent{0};
    std::thread driver{[&] {
        for (std::size_t i = 0; i < kMost + 1; ++i, ++sent)
            stream.trackPoint({}, {});
    }};
    while (sent < kMost)
        std::this_thread::yield();
    stream.close();
    driver.join(); // would hang
    std::size_t received = 0;
    for (host::EventBatch batch; stream.next(batch);)
        received += batch.size();
    EXPECT_EQ(received, kMost) << "the call that waited is dropped";
}

TEST(EventStream, TransfersThatBeginAfterTheEndAreNotCounted)
{
    EventStream stream;
    stream.gpsStateChange(0);
    stream.startTransfer(TransferKind::kTracks);
    EXPECT_EQ(stream.transfersBegun(), 0U);
}

TEST(EventStream, EventOfASlowDriverIsDeliveredBeforeItsBatchIsFull)
{
    EventStream stream;
    stream.gpsStateChange(1);
    host::EventBatch batch;
    ASSERT_TRUE(stream.next(batch)); // would hang if the stream waited for more events
    EXPECT_EQ(batch.size(), 1U);
}

TEST(EventStream, EmptyBatchesArriveWhileThereAreNoEvents)
{
    EventStream stream;
    host::EventBatch batch;
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(stream.next(batch));
        EXPECT_EQ(batch.size(), 0U);
    }
    stream.gpsStateChange(0);
    ASSERT_TRUE(stream.next(batch));
    EXPECT_EQ(batch.size(), 1U);
    EXPECT_FALSE(stream.next(batch));
}

TEST(EventStream, FastDriverWaitsForTheConsumer)
{
    constexpr std::size_t kMost = EventStream::kBatchSize * (EventStream::kMostBatches + 1);
    EventStream stream;
    std::atomic<std::size_t> sent{0};
    std::thread driver{[&] {
        for (std::size_t i = 0; i < 2 * kMost; ++i, ++sent)
            stream.trackPoint({}, {});
        stream.gpsStateChange(0);
    }};
    while (sent < EventStream::kBatchSize * EventStream::kMostBatches)
        std::this_thread::yield();
    EXPECT_LE(sent, kMost);
    std::size_t taken = 0;
    for (host::EventBatch batch; stream.next(batch);) {
        taken += batch.size();
        EXPECT_LE(sent, taken + kMost + EventStream::kBatchSize);
    }
    driver.join();
    EXPECT_EQ(taken, 2 * kMost + 1);
}

TEST(EventStream, HundredThousandPointsArriveInOrder)
{
    EventStream stream;
    std::thread driver{[&] {
        gps::GPSPoint point;
        for (point.time = 0; point.time < 100000; ++point.time)
            stream.trackPoint(point, {{"n", point.time}});
        stream.gpsStateChange(0);
    }};
    std::int64_t expected = 0;
    for (host::EventBatch batch; stream.next(batch);) {
        for (const auto& event : batch) {
            if (event.kind != EventKind::kTrackPoint)
                continue;
            ASSERT_EQ(event.point.time, expected);
            ASSERT_EQ(*event.record.find("n"), gps::Value{expected});
            ++expected;
        }
    }
    driver.join();
    EXPECT_EQ(expected, 100000);
}

TEST(EventStream, TransfersAreCountedAsTheyBegin)
{
    EventStream stream;
    EXPECT_EQ(stream.transfersBegun(), 0U);
    stream.startTransfer(TransferKind::kTracks);
    stream.endTransfer(TransferKind::kTracks);
    EXPECT_EQ(stream.transfersBegun(), 1U);
}

} // namespace
