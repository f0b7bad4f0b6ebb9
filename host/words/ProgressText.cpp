// SPDX-License-Identifier: MIT
// Rates are left out until something has been counted.

#include "host/words/ProgressText.h"

#include "host/base/TermText.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/bundle/SerialPort.h"
#include "host/operations/Operation.h"
#include "host/words/AccountText.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace host {
namespace {

constexpr std::size_t kMostOfName = 30; // characters of a file's name

std::uint64_t perSecond(std::uint64_t count, std::chrono::milliseconds time)
{
    constexpr std::chrono::milliseconds::rep kShortest = 1;
    return count * 1000 / static_cast<std::uint64_t>(std::max(time.count(), kShortest));
}

// "1.2 MB of 5.4 MB, 22 %"
std::string shareText(const TransferProgress& progress)
{
    const auto percent = progress.bytes * 100 / progress.totalBytes;
    return trFormat("{} of {}, {} %", byteText(progress.bytes), byteText(progress.totalBytes),
                    percent);
}

std::string phaseText(const TransferProgress& progress)
{
    switch (progress.phase) {
    case TransferPhase::kReadingFile:
        return trFormat("reading {}", displayText(progress.location, kMostOfName));
    case TransferPhase::kReading:
        return tr("reading");
    case TransferPhase::kWaitingForPort:
        return trFormat("another program uses {}: trying again for {} s", progress.location,
                        kPortPatience.count());
    case TransferPhase::kLookingForReceiver:
        return trFormat("looking for a receiver at {}", progress.location);
    case TransferPhase::kTransferring:
        return progress.kind ? termText(kindName(*progress.kind)) : tr("transferring");
    case TransferPhase::kWaitingForReceiver:
        return tr("waiting for the receiver");
    case TransferPhase::kReadingDevice:
        return tr("reading the device");
    case TransferPhase::kBackingUp:
        return tr("making a backup");
    case TransferPhase::kSending:
        return tr("sending");
    case TransferPhase::kReadingBack:
        return tr("reading back");
    case TransferPhase::kRestoring:
        return tr("restoring");
    case TransferPhase::kWritingFile:
        return trFormat("writing {}", displayText(progress.location, kMostOfName));
    case TransferPhase::kCompressingFile:
        return trFormat("compressing {}", displayText(progress.location, kMostOfName));
    case TransferPhase::kFinished:
        break;
    }
    return {};
}

} // namespace

std::string byteText(std::uint64_t count)
{
    if (count < 1000)
        return trFormat("{} bytes", count);
    const std::uint64_t unit = count < 1000000 ? 1000 : 1000000;
    return fmt::format("{}.{} {}", count / unit, count / (unit / 10) % 10,
                       unit == 1000 ? "kB" : "MB");
}

std::string progressText(const TransferProgress& progress)
{
    const auto phase = phaseText(progress);
    if (progress.totalBytes > 0)
        return phase + ": " + shareText(progress);
    if (progress.totalRecords > 0)
        return trFormat("{}: {} of {} records", phase, groupedText(progress.records),
                        groupedText(progress.totalRecords));
    const auto count = progress.records;
    const auto records = trCounted(count, "{} record", "{} records", count);
    const auto& traffic = progress.traffic;
    const auto bytes = traffic.bytesRead + traffic.bytesWritten;
    if (traffic.bitsPerSecond == 0)
        return count == 0 ? phase
                          : trFormat("{}: {}, {} records/s", phase, records,
                                     perSecond(count, progress.elapsed));
    if (count == 0)
        return trFormat("{}: {} s, {} at {} bit/s", phase, progress.elapsed.count() / 1000,
                        byteText(bytes), traffic.bitsPerSecond);
    return trFormat("{}: {}, {}; {} sentences/s, {} bytes/s at {} bit/s", phase, records,
                    byteText(bytes), perSecond(traffic.linesRead, progress.elapsed),
                    perSecond(bytes, progress.elapsed), traffic.bitsPerSecond);
}

} // namespace host
