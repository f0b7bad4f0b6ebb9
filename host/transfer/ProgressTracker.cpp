// SPDX-License-Identifier: MIT
// The traffic counters are totals of the process, so each phase subtracts what they were at its
// start. Whether an operation uses a serial line is known only once something went over it.

#include "host/transfer/ProgressTracker.h"

#include <platform/System/AtomicFile.h>

#include <algorithm>
#include <utility>

namespace host {

ProgressTracker::ProgressTracker(ProgressCallback callback) : callback_(std::move(callback)) {}

void ProgressTracker::begin(TransferPhase phase, std::string location,
                            std::function<bool()> isAnswered)
{
    if (!callback_)
        return;
    isAnswered_ = std::move(isAnswered);
    isSerial_ = false;
    isWriting_ = false;
    progress_.bytes = progress_.totalBytes = 0;
    progress_.location = std::move(location);
    progress_.kind.reset();
    enter(phase);
    report();
}

void ProgressTracker::expectWrites(std::uint64_t bytes)
{
    isWriting_ = true;
    writtenAtStart_ = gps::fileBytesWritten();
    progress_.totalBytes = bytes;
}

void ProgressTracker::read(std::uint64_t bytes, std::uint64_t total)
{
    if (!callback_)
        return;
    progress_.bytes = bytes;
    progress_.totalBytes = total;
    if (Clock::now() >= nextReport_)
        report();
}

void ProgressTracker::consume(const EventBatch& batch)
{
    if (!callback_)
        return;
    for (const auto& event : batch)
        count(event);
    if (Clock::now() >= nextReport_)
        report();
}

void ProgressTracker::finish()
{
    if (!callback_)
        return;
    progress_ = {};
    callback_(progress_);
}

void ProgressTracker::count(const Event& event)
{
    switch (event.kind) {
    case EventKind::kStartTransfer:
    case EventKind::kStartSending:
        if (isAnswered_ && !isAnswered_())
            break;
        progress_.kind = event.transfer;
        enter(TransferPhase::kTransferring);
        break;
    case EventKind::kEndTransfer:
        measure(); // a short transfer may end before any report
        if (isSerial_ && progress_.phase == TransferPhase::kTransferring)
            enter(TransferPhase::kWaitingForReceiver);
        break;
    case EventKind::kTrackPoint:
    case EventKind::kWayPoint:
        ++progress_.records;
        break;
    default:
        break;
    }
}

void ProgressTracker::enter(TransferPhase phase)
{
    progress_.phase = phase;
    progress_.records = 0;
    atStart_ = gps::serialTraffic();
    entered_ = Clock::now();
}

void ProgressTracker::measure()
{
    auto traffic = gps::serialTraffic();
    traffic.bytesRead -= atStart_.bytesRead;
    traffic.bytesWritten -= atStart_.bytesWritten;
    traffic.linesRead -= atStart_.linesRead;
    isSerial_ = isSerial_ || traffic.bytesRead + traffic.bytesWritten > 0;
    progress_.traffic = isSerial_ ? traffic : gps::SerialTraffic{};
}

void ProgressTracker::report()
{
    measure();
    if (isWriting_)
        progress_.bytes = std::min(gps::fileBytesWritten() - writtenAtStart_, progress_.totalBytes);
    const auto now = Clock::now();
    nextReport_ = now + kInterval;
    progress_.elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now - entered_);
    callback_(progress_);
}

} // namespace host
