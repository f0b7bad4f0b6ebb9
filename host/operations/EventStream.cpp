// SPDX-License-Identifier: MIT
// Three kinds of batches are under the mutex: the one being filled, the full ones in order, and
// spares whose storage is reused. The consumer holds one more.

#include "host/operations/EventStream.h"

#include <chrono>
#include <cstdint>
#include <string_view>
#include <utility>

namespace host {

// How long next() waits before it takes a batch that is not full, or returns an empty one.
static constexpr std::chrono::milliseconds kLongestWait{50};

template <typename Fill> void EventStream::append(EventKind kind, Fill fill)
{
    std::unique_lock lock{mutex_};
    hasRoom_.wait(lock, [this] { return ended_ || full_.size() < kMostBatches; });
    if (ended_)
        return;
    Event& event = filling_.add();
    event.kind = kind;
    fill(event);
    if (kind == EventKind::kStartTransfer)
        ++transfersBegun_;
    ended_ = kind == EventKind::kStateChange && event.state == 0;
    if (ended_ || filling_.size() == kBatchSize)
        handOver();
}

void EventStream::handOver()
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
    handOver();
    hasRoom_.notify_all();
}

bool EventStream::next(EventBatch& batch)
{
    std::unique_lock lock{mutex_};
    batch.clear();
    spares_.push_back(std::exchange(batch, {}));
    if (full_.empty() && !ended_)
        arrived_.wait_for(lock, kLongestWait);
    if (full_.empty() && filling_.size() > 0)
        handOver();
    if (full_.empty()) {
        batch = std::move(spares_.back()); // the one that the caller gave back
        spares_.pop_back();
        return !ended_;
    }
    batch = std::move(full_.front());
    full_.pop_front();
    hasRoom_.notify_one();
    return true;
}

std::size_t EventStream::transfersBegun() const
{
    const std::lock_guard lock{mutex_};
    return transfersBegun_;
}

void EventStream::gpsStateChange(std::int32_t state)
{
    append(EventKind::kStateChange, [&](Event& event) { event.state = state; });
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
