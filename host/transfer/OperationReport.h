// SPDX-License-Identifier: MIT
// OperationReport: what one operation of a driver did for a download, as values that a front end
// can show. A driver reports few failures, so much of this is concluded from its account, its
// events and its log. [host thread]

#pragma once

#include "host/operations/Operation.h"
#include "host/transfer/AccountFindings.h"
#include "host/transfer/RepeatFilter.h"

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
    std::vector<gps::TransferKind> recovered{}; ///< missing, but read by a later operation

    /// Errors that the driver reported and the one that it returned, in order. The wordless errors
    /// of a serial driver have got a description.
    std::vector<gps::Error> errors{};

    /// Why the serial port cannot be used, if the driver reported an error.
    std::optional<gps::Error> portFailure{};

    /// What answered on the serial port; nullopt for other devices and if nobody knows.
    std::optional<gps::LineVoice> voice{};
    std::vector<SessionGap> gaps{}; ///< of a serial session whose receiver answered
    RepeatCounts repeats{};         ///< records that arrived twice and were dropped

    /// Files and folders that the driver could not read, list or look at, or only in part, each
    /// with its cause. Those that `errors` ends with are not repeated.
    std::vector<gps::Error> unreadable{};
    std::size_t moreUnreadable = 0; ///< further ones, of which nothing is known

    std::vector<std::string> unreadValues{}; ///< of points of an imported map file, in sentences
    std::vector<std::string> ignored{};      ///< what it holds besides records, in sentences

    bool isRefused = false;     ///< the driver reported an error before any transfer of an import
    bool isInterrupted = false; ///< the user stopped it
    bool isAbandoned = false;   ///< the host left without waiting for its end

    std::vector<std::string> logLines{}; ///< what else the plug-in logged, the first lines of it
    std::size_t moreLogLines = 0;

    /// The driver's own account; nullopt if it keeps none or has not ended.
    std::optional<gps::TransferAccount> account{};

    /// Whether anything on the serial port understands the protocol, or the device needs no port.
    [[nodiscard]] bool isAnswered() const noexcept
    {
        return !voice || *voice == gps::LineVoice::kReceiver;
    }

    /// Whether any records may have arrived.
    [[nodiscard]] bool hasReceived() const noexcept { return !received.empty() && isAnswered(); }

    /// Whether everything arrived that was requested and that the device can give.
    [[nodiscard]] bool isComplete() const noexcept
    {
        return errors.empty() && missing.empty() && isAnswered() && gaps.empty() &&
               unreadable.empty() && moreUnreadable == 0 && !isInterrupted && !isAbandoned;
    }

    /// Whether lines on the device or values in a map file are damaged, which nobody can get.
    [[nodiscard]] bool hasDamagedLines() const;
};

/// What the host knows about an operation that it has run.
struct OperationFacts {
    gps::Dictionary options{};    ///< of the operation
    std::string location{};       ///< of the device; not used for an import
    bool wasHeard = false;        ///< whether anything was read from a serial port meanwhile
    bool isStopAsked = false;     ///< the host asked the driver to stop
    bool isStoppedByUser = false; ///< because of the user
    RepeatCounts repeats{};
    bool isOfDriver =
        true; ///< false: the host read the file, and the driver's account is another's
};

/// Concludes the report from an operation's outcome and, if the driver keeps one, its account.
[[nodiscard]] OperationReport reportOn(const Outcome& outcome, const gps::GPSPlugInProtocol& driver,
                                       const OperationFacts& facts);

/// The same for the records of a file that a driver refused to import and the host then reported.
[[nodiscard]] OperationReport reportOnRefused(const Outcome& outcome, gps::FileAccount account);

} // namespace host
