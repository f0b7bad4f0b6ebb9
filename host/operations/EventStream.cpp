// SPDX-License-Identifier: MIT
// Three kinds of batches are under the mutex: the one being filled, the full ones in order, and
// spares whose storage is reused. The consumer holds one more.

#include "host/operations/EventStream.h"

#include <chrono>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace host {

// How long next() waits before it takes a batch that is not full, or returns an empty one.
static constexpr std::chrono::milliseconds kLongestWait{50};

// How many batches there can be: those that wait, the one being filled, and the consumer's.
static constexpr std::size_t kAllBatches = EventStream::kMostBatches + 2;

void EventBatch::noteTextsOf(const gps::Dictionary& record) noexcept
{
    constexpr std::size_t kUsualText = 1024; // bytes
    for (const auto& [key, value] : record) {
        const auto* const text = value.as<std::string>();
        if (text != nullptr && text->size() > kUsualText)
            longTexts_ += text->size();
    }
}

EventStream::EventStream()
{
    full_.reserve(kAllBatches);
    spares_.reserve(kAllBatches);
}

// Blocks the driver while the queue is full. After the end it never blocks: a worker that the host
// has abandoned must be able to finish.
template <typename Fill> void EventStream::append(EventKind kind, Fill fill)
{
    std::unique_lock lock{mutex_};
    hasRoom_.wait(lock, [this] { return ended_ || full_.size() < kMostBatches; });
    if (ended_)
        return;
    try {
        fillNext(kind, fill);
    } catch (const std::bad_alloc&) {
        isIncomplete_ = true;
    }
    if (kind == EventKind::kStartTransfer)
        ++transfersBegun_;
    if (filling_.size() == kBatchSize || filling_.isLarge())
        handOver();
}

template <typename Fill> void EventStream::fillNext(EventKind kind, Fill fill)
{
    Event& event = filling_.add();
    event.kind = kind;
    try {
        fill(event);
        filling_.noteTextsOf(event.record);
    } catch (const std::bad_alloc&) {
        filling_.removeLast(); // an event with half of its record would be a wrong one
        throw;
    }
}

// Allocates nothing: the constructor has reserved room for every batch that can exist.
void EventStream::handOver() noexcept
{
    full_.push_back(std::exchange(filling_, {}));
    if (!spares_.empty()) {
        filling_ = std::move(spares_.back());
        spares_.pop_back();
    }
    arrived_.notify_one();
}

void EventStream::close()
{
    const std::lock_guard lock{mutex_};
    ended_ = true;
    arrived_.notify_one();
    hasRoom_.notify_all();
}

bool EventStream::next(EventBatch& batch)
{
    std::unique_lock lock{mutex_};
    batch.clear();
    if (batch.isLarge())
        batch = {};
    spares_.push_back(std::exchange(batch, {}));
    if (full_.empty() && !ended_)
        arrived_.wait_for(lock, kLongestWait);
    // Taken although it is not full, so that the events of a slow serial line are seen while they
    // arrive.
    if (full_.empty() && filling_.size() > 0)
        handOver();
    if (full_.empty()) {
        batch = std::move(spares_.back()); // the one that the caller gave back
        spares_.pop_back();
        return !ended_;
    }
    batch = std::move(full_.front());
    full_.erase(full_.begin());
    hasRoom_.notify_one();
    return true;
}

std::size_t EventStream::transfersBegun() const
{
    const std::lock_guard lock{mutex_};
    return transfersBegun_;
}

bool EventStream::isIncomplete() const
{
    const std::lock_guard lock{mutex_};
    return isIncomplete_;
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
