// SPDX-License-Identifier: MIT

#include "host/operations/EventStream.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using gps::TransferKind;
using host::EventKind;
using host::EventStream;

// The next events; the stream has not ended.
host::EventBatch nextOf(EventStream& stream)
{
    const auto batch = stream.next();
    EXPECT_TRUE(batch);
    return batch.value_or(host::EventBatch{});
}

TEST(EventStream, SegmentOfTheHostHasNoRecord)
{
    EventStream stream;
    stream.newTrack({{"name", "T"}});
    stream.newSegment();
    stream.gpsStateChange(0);
    const auto event = nextOf(stream);
    ASSERT_EQ(event.size(), 3U);
    EXPECT_EQ(event[1].kind, EventKind::kNewSegment);
    EXPECT_TRUE(event[1].record.empty());
}

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

    const auto event = nextOf(stream);
    ASSERT_EQ(event.size(), 11U);
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
    EXPECT_FALSE(stream.next());
}

TEST(EventStream, RecordIsCopiedSoTheDriverMayUseItsOwnAgain)
{
    EventStream stream;
    gps::Dictionary extras{{"name", "first"}};
    stream.wayPoint({}, extras);
    extras.set("name", "second");
    stream.wayPoint({}, extras);
    stream.gpsStateChange(0);
    const auto batch = nextOf(stream);
    ASSERT_EQ(batch.size(), 3U);
    EXPECT_EQ(*batch[0].record.findString("name"), "first");
    EXPECT_EQ(*batch[1].record.findString("name"), "second");
}

// A driver that reports records with a text of the given length until it is told to stop.
class WordyDriver {
public:
    WordyDriver(EventStream& stream, std::size_t length)
        : thread_{[this, &stream, text = std::string(length, 'x')] {
              for (; !isStopped_; ++sent_)
                  stream.wayPoint({}, {{"comment", text}});
          }}
    {}
    ~WordyDriver()
    {
        isStopped_ = true;
        thread_.join();
    }

    [[nodiscard]] std::size_t sent() const { return sent_; }

private:
    std::atomic<bool> isStopped_{false};
    std::atomic<std::size_t> sent_{0};
    std::thread thread_;
};

TEST(EventStream, DriverWaitsWhenLongTextsFillTheirShareOfMemory)
{
    constexpr std::size_t kLong = std::size_t{1} << 20;
    constexpr std::size_t kMost = EventStream::kMostLongTexts / kLong + 1; // the last one is more
    EventStream stream;
    const WordyDriver driver{stream, kLong};
    while (driver.sent() < kMost)
        std::this_thread::yield();
    for (std::size_t taken = 0; taken < 3 * kMost; taken += nextOf(stream).size())
        EXPECT_LE(driver.sent(), taken + kMost);
    stream.close();
}

TEST(EventStream, ShortTextsFillTheWholeRing)
{
    EventStream stream;
    const WordyDriver driver{stream, EventStream::kLongText};
    while (driver.sent() < EventStream::kMostEvents) // would hang if they counted as long
        std::this_thread::yield();
    stream.close();
}

TEST(EventStream, StorageOfALongTextIsNotKept)
{
    EventStream stream;
    stream.wayPoint({}, {{"comment", std::string(EventStream::kLongText + 1, 'x')}});
    const auto batch = nextOf(stream);
    ASSERT_EQ(batch.size(), 1U);
    EXPECT_FALSE(batch[0].record.empty());
    EXPECT_TRUE(nextOf(stream).empty());
    EXPECT_TRUE(batch[0].record.empty());
}

TEST(EventStream, CallsAfterTheIdleReportAreDropped)
{
    EventStream stream;
    stream.gpsStateChange(0);
    stream.gpsStateChange(1);
    EXPECT_EQ(nextOf(stream).size(), 1U);
    EXPECT_FALSE(stream.next());
}

TEST(EventStream, ClosingEndsTheStreamAfterItsLastEvent)
{
    EventStream stream;
    stream.startTransfer(TransferKind::kTracks);
    stream.close();
    stream.endTransfer(TransferKind::kTracks);
    EXPECT_EQ(nextOf(stream).size(), 1U);
    EXPECT_FALSE(stream.next());
}

TEST(EventStream, ClosingReleasesADriverThatWaitsForTheConsumer)
{
    constexpr std::size_t kMost = EventStream::kMostEvents;
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
    while (const auto batch = stream.next())
        received += batch->size();
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
    EXPECT_EQ(nextOf(stream).size(), 1U); // would hang if the stream waited for more events
}

TEST(EventStream, EmptyBatchesArriveWhileThereAreNoEvents)
{
    EventStream stream;
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(nextOf(stream).empty());
    stream.gpsStateChange(0);
    EXPECT_EQ(nextOf(stream).size(), 1U);
    EXPECT_FALSE(stream.next());
}

TEST(EventStream, FastDriverWaitsForTheConsumer)
{
    constexpr std::size_t kMost = EventStream::kMostEvents;
    EventStream stream;
    std::atomic<std::size_t> sent{0};
    std::thread driver{[&] {
        for (std::size_t i = 0; i < 4 * kMost; ++i, ++sent)
            stream.trackPoint({}, {});
        stream.gpsStateChange(0);
    }};
    while (sent < kMost)
        std::this_thread::yield();
    EXPECT_LE(sent, kMost);
    std::size_t taken = 0;
    while (const auto batch = stream.next()) {
        EXPECT_LE(sent, taken + kMost) << "the batch itself still occupies its slots";
        EXPECT_LE(batch->size(), EventStream::kMostInBatch);
        taken += batch->size();
    }
    driver.join();
    EXPECT_EQ(taken, 4 * kMost + 1);
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
    while (const auto batch = stream.next()) {
        for (const auto& event : *batch) {
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
