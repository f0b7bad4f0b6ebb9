// SPDX-License-Identifier: MIT
// ProgressTracker: turns an operation's events and the serial traffic into progress reports for a
// callback. Used by downloads, sends and restores. One thread at a time.

#pragma once

#include "host/operations/EventStream.h"
#include "host/transfer/TransferProgress.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace host {

class ProgressTracker {
public:
    /// The shortest time between two reports within a phase.
    static constexpr std::chrono::milliseconds kInterval{200};

    /// @param callback  may be empty: nothing is tracked then
    explicit ProgressTracker(ProgressCallback callback);

    /// Starts an operation, or a step that the host does around one, and reports it at once.
    /// @param location    the port, for kLookingForReceiver
    /// @param isAnswered  whether a receiver has answered there. Until then no transfer is shown: a
    ///                    driver may begin all of them although nothing can arrive. May be empty
    void begin(TransferPhase phase, std::string location = {},
               std::function<bool()> isAnswered = {});

    /// Announces that so many bytes will be written to the device's files. Call it after begin().
    void expectWrites(std::uint64_t bytes);

    /// Notes how much of a file has been read.
    void read(std::uint64_t bytes, std::uint64_t total);

    /// Counts a batch of events. An empty batch only reports that time passes, which matters on a
    /// serial line that is silent for long.
    void consume(const EventBatch& batch);

    /// Reports kFinished.
    void finish();

private:
    using Clock = std::chrono::steady_clock;

    void count(const Event& event);
    void enter(TransferPhase phase);
    void measure();
    void report();

    ProgressCallback callback_;
    std::function<bool()> isAnswered_;
    TransferProgress progress_;
    gps::SerialTraffic atStart_{};     // totals of the process when the phase began
    std::uint64_t writtenAtStart_ = 0; // likewise, when writes were announced
    bool isWriting_ = false;           // whether they were
    bool isSerial_ = false;            // whether anything went over a serial line since begin()
    Clock::time_point entered_{};      // when the phase began
    Clock::time_point nextReport_{};
};

} // namespace host
