// SPDX-License-Identifier: MIT
// EventStream: the status object that the host hands to a driver, and the ordered stream of events
// that comes out of it. The driver's functions may be called by one thread at a time, the host
// thread included; next() by another thread meanwhile.

#pragma once

#include "host/operations/Event.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace host {

/// Consecutive events, in the stream's own storage.
using EventBatch = std::span<const Event>;

/// A ring of events: a driver that is faster than the consumer waits for it, so memory does not
/// grow with the number of records, nor with the length of their texts. The stream ends with the
/// idle report or when it is closed; later calls of the driver are dropped. A call that there is no
/// memory for is dropped, too: a status object must not throw.
class EventStream final : public gps::GPSOutputReceiver {
public:
    static constexpr std::size_t kMostEvents = 4096; ///< that wait for the consumer
    static constexpr std::size_t kMostInBatch = 512;
    static constexpr std::size_t kWakeAfter = 2048; ///< events, so that waking is rare
    static constexpr std::size_t kLongText = 1024;  ///< bytes; those of real receivers are short
    static constexpr std::size_t kMostLongTexts = std::size_t{16} << 20; ///< bytes that wait

    EventStream() : ring_(kMostEvents) {}

    // The driver's side.
    void gpsStateChange(std::int32_t state) override;
    void startTransfer(gps::TransferKind kind) override;
    void endTransfer(gps::TransferKind kind) override;
    void newTrack(const gps::Dictionary& track) override;
    void trackPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override;
    void wayPoint(const gps::GPSPoint& point, const gps::Dictionary& extra) override;
    void newRoute(const gps::Dictionary& route) override;
    void startSending(std::string_view label, gps::TransferKind kind) override;
    void endSending(gps::TransferKind kind) override;
    void error(const gps::Error& error) override;

    /// For what the host reads itself: the open track goes on behind a gap.
    void newSegment();

    /// Ends the stream of an operation that failed to start. [host thread]
    void close();

    /// Waits for the next events, but only for a short time: a slow driver's events arrive before a
    /// batch is full, and if there is none, the batch is empty, so that the consumer can show that
    /// time passes. One consuming thread.
    ///
    /// @return  valid until the next call; nullopt at the end of the stream
    [[nodiscard]] std::optional<EventBatch> next();

    /// How many transfers have begun so far. [any]
    [[nodiscard]] std::size_t transfersBegun() const { return transfersBegun_; }

    /// Whether a call was dropped because there was no memory for it. [any]
    [[nodiscard]] bool isIncomplete() const { return isIncomplete_; }

private:
    struct LongEvent {
        std::size_t index; // counted from the first event
        std::size_t bytes; // of its long texts
    };

    template <typename Fill> void append(EventKind kind, Fill fill);
    template <typename Fill>
    [[nodiscard]] bool fillSlot(Event& event, std::size_t index, Fill fill);
    void noteLongTexts(const gps::Dictionary& record, std::size_t index);
    [[nodiscard]] bool hasRoomFor(std::size_t index) const noexcept;
    [[nodiscard]] bool waitForRoom(std::size_t index);
    void wakeConsumer();
    void releaseBatch();

    std::vector<Event> ring_; // event number i is in slot i % kMostEvents

    // Written by one side and read by the other, each on a cache line of its own: a driver's call
    // takes no lock. An event is handed over by raising written_, a slot by raising released_.
    alignas(64) std::atomic<std::size_t> written_{0};
    std::size_t roomUntil_ = kMostEvents; // the driver's last look at released_, plus kMostEvents
    alignas(64) std::atomic<std::size_t> released_{0};
    std::size_t delivered_ = 0; // the consumer's: the end of the batch that it has
    alignas(64) std::atomic<std::size_t> longTexts_{0}; // bytes that wait
    std::atomic<std::size_t> transfersBegun_{0};
    std::atomic<bool> ended_{false};
    std::atomic<bool> isIncomplete_{false};

    std::mutex mutex_; // for waiting, and for longEvents_
    std::condition_variable arrived_;
    std::condition_variable hasRoom_;
    std::deque<LongEvent> longEvents_; // that wait, in order
};

} // namespace host
