// SPDX-License-Identifier: MIT
// EventStream: the status object that the host hands to a driver, and the ordered stream of events
// that comes out of it. The driver's functions may be called by one thread at a time, the host
// thread included; next() by another thread meanwhile.

#pragma once

#include "host/operations/Event.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <vector>

namespace host {

/// Consecutive events. Batches travel between the threads as a whole and are reused, so that each
/// record is copied once and its storage is allocated seldom.
class EventBatch {
public:
    [[nodiscard]] const Event* begin() const noexcept { return events_.data(); }
    [[nodiscard]] const Event* end() const noexcept { return events_.data() + used_; }
    [[nodiscard]] std::size_t size() const noexcept { return used_; }

    /// Whether long texts have made it so large that it must neither grow nor be reused.
    [[nodiscard]] bool isLarge() const noexcept { return longTexts_ >= kMostLongTexts; }

    /// Counts the long texts in a record that was stored here. Those of real receivers are short.
    void noteTextsOf(const gps::Dictionary& record) noexcept;

    Event& add()
    {
        if (used_ == events_.size())
            events_.emplace_back();
        return events_[used_++];
    }
    void removeLast() noexcept { --used_; }
    void clear() noexcept { used_ = 0; } ///< keeps the storage

private:
    static constexpr std::size_t kMostLongTexts = std::size_t{1} << 20; // bytes

    std::vector<Event> events_;
    std::size_t used_ = 0;
    std::size_t longTexts_ = 0; // bytes since it was created: cleared events keep their storage
};

/// A bounded queue: a driver that is faster than the consumer waits for it, so memory does not grow
/// with the number of records, nor with the length of their texts. The stream ends with the idle
/// report or when it is closed; later calls of the driver are dropped. A call that there is no
/// memory for is dropped, too: a status object must not throw.
class EventStream final : public gps::GPSOutputReceiver {
public:
    static constexpr std::size_t kBatchSize = 256;
    static constexpr std::size_t kMostBatches = 16; ///< full batches that wait for the consumer

    EventStream();

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

    /// Ends the stream of an operation that failed to start. [host thread]
    void close();

    /// Waits for the next events, but only for a short time: a slow driver's events arrive before a
    /// batch is full, and if there is none, the batch is empty, so that the consumer can show that
    /// time passes. One consuming thread.
    ///
    /// @param batch  in: the previous batch, to be reused. out: the next one
    /// @return       false at the end of the stream; the batch is then empty
    [[nodiscard]] bool next(EventBatch& batch);

    /// How many transfers have begun so far. [any]
    [[nodiscard]] std::size_t transfersBegun() const;

    /// Whether a call was dropped because there was no memory for it. [any]
    [[nodiscard]] bool isIncomplete() const;

private:
    template <typename Fill> void append(EventKind kind, Fill fill);
    template <typename Fill> void fillNext(EventKind kind, Fill fill);
    void handOver() noexcept;

    mutable std::mutex mutex_;
    std::condition_variable arrived_;
    std::condition_variable hasRoom_;
    EventBatch filling_;
    std::vector<EventBatch> full_; // in order; has room for all batches, and so have the spares
    std::vector<EventBatch> spares_;
    std::size_t transfersBegun_ = 0;
    bool ended_ = false;
    bool isIncomplete_ = false;
};

} // namespace host
