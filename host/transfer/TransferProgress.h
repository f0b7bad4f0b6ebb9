// SPDX-License-Identifier: MIT
// TransferProgress: how far a download or a send is, as plain data. transfer/ hands it to a
// callback; each front end finds its own words for it. A plain value: any thread may hold its own.

#pragma once

#include <gps/GPSOutputReceiver.h>
#include <platform/OrvUtils/SerialTraffic.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace host {

enum class TransferPhase {
    kReadingFile,        ///< before a send: a map file
    kReading,            ///< a device's files or a source file, before the first record
    kWaitingForPort,     ///< another program has the serial port open
    kLookingForReceiver, ///< on a serial port
    kTransferring,       ///< records of one kind, in either direction
    kWaitingForReceiver, ///< on a serial port, between two kinds
    kReadingDevice,      ///< before a send: what the device holds
    kBackingUp,          ///< before a send or a restore
    kSending,            ///< before the first record
    kReadingBack,        ///< after a send: whether the device holds what was sent
    kRestoring,          ///< putting a backup back
    kWritingFile,        ///< an export: `records` of `totalRecords` so far
    kCompressingFile,    ///< an export, at its end
    kFinished,           ///< no further report follows; a front end removes what it shows
};

/// All counts start at zero with each phase.
struct TransferProgress {
    TransferPhase phase = TransferPhase::kFinished;
    std::string location{};                  ///< kWaitingForPort and kLookingForReceiver: the port;
                                             ///< kReadingFile, kWritingFile, kCompressingFile:
                                             ///< the file's name
    std::optional<gps::TransferKind> kind{}; ///< kTransferring: the kind of the records
    std::size_t records = 0;                 ///< waypoints, route points and track points
    std::size_t totalRecords = 0;            ///< 0: not known
    gps::SerialTraffic traffic{};            ///< bitsPerSecond is 0 if no serial line is in use
    std::chrono::milliseconds elapsed{};

    /// How much of a file was read or compressed, or of all files written, whatever phase it is;
    /// the total is 0 if it is not known.
    std::uint64_t bytes = 0;
    std::uint64_t totalBytes = 0;
};

/// Called on the host thread or on the thread that consumes an operation's events, never on both at
/// once. Must not throw and should return quickly: the driver waits meanwhile.
using ProgressCallback = std::function<void(const TransferProgress& progress)>;

} // namespace host
