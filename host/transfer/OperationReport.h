// SPDX-License-Identifier: MIT
// OperationReport: what one operation of a driver did for a download, as values that a front end
// can show. A driver keeps most failures to itself, so much of this is concluded from its events
// and its log. [host thread]

#pragma once

#include "host/operations/Operation.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct OperationReport {
    std::string sourceFile{}; ///< the file that was imported; empty: a device was read
    std::string location{};   ///< of that device
    bool isSerial = false;    ///< whether the device was read through a serial port

    std::vector<gps::TransferKind> requested{}; ///< kinds that had to arrive; empty for an import
    std::vector<gps::TransferKind> received{};  ///< kinds whose transfer began, in order
    std::vector<gps::TransferKind> missing{};   ///< requested, but neither received nor explained
                                                ///< by an entry of `errors`

    /// Errors that the driver reported and the one that it returned, in order. The wordless errors
    /// of a serial driver have got a description.
    std::vector<gps::Error> errors{};

    /// Why the serial port cannot be used, if the driver reported an error.
    std::optional<gps::Error> portFailure{};
    bool isReceiverSilent = false; ///< nothing at all was read from the serial port

    /// Files and folders that the driver could not read, or only in part, without reporting it.
    /// Those that `errors` ends with are not repeated.
    std::vector<gps::Error> unreadable{};
    std::size_t moreUnreadable = 0; ///< further ones, of which nothing is known
    bool isCutShort = false;        ///< one of them ended a transfer before its last record

    std::vector<std::string> logLines{}; ///< what else the plug-in logged, the first lines of it
    std::size_t moreLogLines = 0;

    /// Whether any records may have arrived.
    [[nodiscard]] bool hasReceived() const noexcept
    {
        return !received.empty() && !isReceiverSilent;
    }

    /// Whether everything that was requested arrived, apart from what is in unreadable files.
    [[nodiscard]] bool isComplete() const noexcept
    {
        return errors.empty() && missing.empty() && !isReceiverSilent && !isCutShort;
    }

    [[nodiscard]] bool succeeded() const noexcept
    {
        return isComplete() && unreadable.empty() && moreUnreadable == 0;
    }
};

/// Concludes the report from an operation's outcome.
/// @param options   the operation's options
/// @param location  the device's location; not used for an import
/// @param wasHeard  whether anything was read from a serial port during the operation
[[nodiscard]] OperationReport reportOn(const Outcome& outcome, const gps::GPSPlugInProtocol& driver,
                                       const gps::Dictionary& options, const std::string& location,
                                       bool wasHeard);

} // namespace host
