// SPDX-License-Identifier: MIT
// A ring that one thread fills and one empties. Locks are only for waiting: with one lock per call,
// the driver's processor would have to wait for each slot to come out of the consumer's cache.

#include "host/operations/EventStream.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <string>

namespace host {

// How long next() waits before it returns what there is.
static constexpr std::chrono::milliseconds kLongestWait{50};

// Blocks the driver while the ring is full. After the end it never blocks: a worker that the host
// has abandoned must be able to finish.
template <typename Fill> void EventStream::append(EventKind kind, Fill fill)
{
    const auto index = written_.load(std::memory_order_relaxed);
    if (ended_.load(std::memory_order_acquire))
        return;
    const bool isFull = index == roomUntil_ || longTexts_ > kMostLongTexts;
    if (isFull && !waitForRoom(index))
        return;
    if (kind == EventKind::kStartTransfer)
        ++transfersBegun_;
    Event& event = ring_[index % kMostEvents];
    event.kind = kind;
    if (!fillSlot(event, index, fill))
        return;
    written_.store(index + 1, std::memory_order_release);
    if ((index + 1) % kWakeAfter == 0)
        wakeConsumer();
}

// An event with half of its record would be a wrong one, so it is dropped.
template <typename Fill> bool EventStream::fillSlot(Event& event, std::size_t index, Fill fill)
try {
    fill(event);
    if (!event.record.empty())
        noteLongTexts(event.record, index);
    return true;
} catch (const std::bad_alloc&) {
    isIncomplete_ = true;
    return false;
}

void EventStream::noteLongTexts(const gps::Dictionary& record, std::size_t index)
{
    std::size_t bytes = 0;
    for (const auto& [key, value] : record) {
        const auto* const text = value.as<std::string>();
        if (text != nullptr && text->size() > kLongText)
            bytes += text->size();
    }
    if (bytes == 0)
        return;
    const std::lock_guard lock{mutex_};
    longEvents_.push_back({index, bytes});
    longTexts_ += bytes;
}

bool EventStream::hasRoomFor(std::size_t index) const noexcept
{
    return index < released_.load(std::memory_order_acquire) + kMostEvents &&
           longTexts_ <= kMostLongTexts;
}

// Returns false at the end of the stream. A driver that has to wait waits until half of the ring is
// free, so that the two threads do not wake each other for each batch.
bool EventStream::waitForRoom(std::size_t index)
{
    if (!hasRoomFor(index)) {
        std::unique_lock lock{mutex_};
        arrived_.notify_one();
        hasRoom_.wait(lock, [&] { return ended_ || hasRoomFor(index + kMostEvents / 2); });
    }
    roomUntil_ = released_ + kMostEvents;
    return !ended_;
}

void EventStream::wakeConsumer()
{
    const std::lock_guard lock{mutex_};
    arrived_.notify_one();
}

void EventStream::close()
{
    const std::lock_guard lock{mutex_};
    ended_ = true;
    arrived_.notify_one();
    hasRoom_.notify_all();
}

std::optional<EventBatch> EventStream::next()
{
    std::unique_lock lock{mutex_};
    releaseBatch();
    // After the wait, even a batch that is not full is delivered, so that the events of a slow
    // serial line are seen while they arrive.
    arrived_.wait_for(lock, kLongestWait, [this] {
        return ended_ || written_ - delivered_ >= kMostInBatch || longTexts_ > kMostLongTexts;
    });
    const bool hasEnded = ended_; // before written_ is read: nothing is written after the end
    const auto first = delivered_ % kMostEvents;
    const auto count = std::min(
        {written_.load(std::memory_order_acquire) - delivered_, kMostEvents - first, kMostInBatch});
    if (count == 0 && hasEnded)
        return std::nullopt;
    delivered_ += count;
    return EventBatch{&ring_[first], count};
}

// The storage of a record is used again, but not that of a long text.
void EventStream::releaseBatch()
{
    while (!longEvents_.empty() && longEvents_.front().index < delivered_) {
        const auto [index, bytes] = longEvents_.front();
        ring_[index % kMostEvents].record = gps::Dictionary{};
        longTexts_ -= bytes;
        longEvents_.pop_front();
    }
    released_.store(delivered_, std::memory_order_release);
    hasRoom_.notify_one();
}

void EventStream::gpsStateChange(std::int32_t state)
{
    append(EventKind::kStateChange, [&](Event& event) { event.state = state; });
    if (state == 0)
        close(); // also if there was no memory for the event: the consumer waits for the end
}

void EventStream::startTransfer(gps::TransferKind kind)
{
    append(EventKind::kStartTransfer, [&](Event& event) { event.transfer = kind; });
}

void EventStream::endTransfer(gps::TransferKind kind)
{
    append(EventKind::kEndTransfer, [&](Event& event) { event.transfer = kind; });
}

void EventStream::newTrack(const gps::Dictionary& track)
{
    append(EventKind::kNewTrack, [&](Event& event) { event.record = track; });
}

void EventStream::newSegment()
{
    append(EventKind::kNewSegment, [](Event& event) { event.record.clear(); });
}

void EventStream::trackPoint(const gps::GPSPoint& point, const gps::Dictionary& extra)
{
    append(EventKind::kTrackPoint, [&](Event& event) {
        event.point = point;
        event.record = extra;
    });
}

void EventStream::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& extra)
{
    append(EventKind::kWayPoint, [&](Event& event) {
        event.point = point;
        event.record = extra;
    });
}

void EventStream::newRoute(const gps::Dictionary& route)
{
    append(EventKind::kNewRoute, [&](Event& event) { event.record = route; });
}

void EventStream::startSending(std::string_view label, gps::TransferKind kind)
{
    append(EventKind::kStartSending, [&](Event& event) {
        event.label = label;
        event.transfer = kind;
    });
}

void EventStream::endSending(gps::TransferKind kind)
{
    append(EventKind::kEndSending, [&](Event& event) { event.transfer = kind; });
}

void EventStream::error(const gps::Error& error)
{
    append(EventKind::kError, [&](Event& event) { event.error = error; });
}

} // namespace host
