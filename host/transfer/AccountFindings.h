// SPDX-License-Identifier: MIT
// AccountFindings: what a driver's account of an operation means for the user: which lines of each
// kind were lost, what a serial session did not get, which files were not read. Used by reports on
// operations and by whatever shows them. Stateless. [any]

#pragma once

#include <gps/Error.h>
#include <gps/GPSTransferAccount.h>

#include <cstdint>
#include <string>
#include <vector>

namespace host {

/// The damaged lines of one file, or the damaged sentences of a phase.
struct DamagedLines {
    std::string path{};                   ///< empty: the serial line
    std::vector<std::uint64_t> numbers{}; ///< from 1; not more than the account has details
};

/// What became of all lines of one kind.
struct KindTally {
    std::string kind{}; ///< "tracks", "waypoints", "routes" or "geocaches"
    bool isSerial = false;
    gps::LineAccount lines{}; ///< without details
    std::vector<DamagedLines> damaged{};

    /// Lines that cannot be read by anybody: they are damaged on the device, or were on their way.
    [[nodiscard]] std::uint64_t damagedCount() const noexcept;
};

/// One tally for each kind that the account knows, in its order.
[[nodiscard]] std::vector<KindTally> talliesOf(const gps::TransferAccount& account);

/// Something that a serial session should have got from the receiver and did not get.
struct SessionGap {
    enum class Cause {
        kNotReached,      ///< a phase
        kSilence,         ///< a phase
        kDamage,          ///< a phase
        kStopped,         ///< a phase
        kFailed,          ///< a phase
        kNotAcknowledged, ///< a command
        kSpeedRefused,    ///< the command that changes to the speed of downloads
        kUnknownPoints,   ///< points of routes
        kUnfinishedRoutes,
        kRepeatedRoutes, ///< sentences of routes that were repeated, so points may be there twice
    };

    Cause cause{};
    std::string subject{}; ///< the kind of a phase, or the body of a command
    std::uint64_t count =
        0; ///< of a phase: sentences that arrived; otherwise how many are affected
    bool isClosingDown = false; ///< a command that restores the receiver's state
};

/// The gaps of a serial session, in session order. Empty if there were no phases or commands.
/// @param repeatedRoutes  how many repeats the host noticed and dropped
[[nodiscard]] std::vector<SessionGap> gapsIn(const gps::TransferAccount& account,
                                             std::uint64_t repeatedRoutes);

/// The same error with its cause as the description: drivers describe what they were doing, and
/// suggest what helps against another cause.
[[nodiscard]] gps::Error causeOf(const gps::Error& error);

/// What could not be read, listed or looked at, each with its cause, in reading order.
[[nodiscard]] std::vector<gps::Error> unreadablePaths(const gps::TransferAccount& account);

} // namespace host
