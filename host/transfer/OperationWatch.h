// SPDX-License-Identifier: MIT
// OperationWatch: decides when a running operation is asked to stop, and when the host stops
// waiting for it. Used by downloads. One thread at a time.

#pragma once

#include <gps/GPSPlugInProtocol.h>
#include <gps/GPSSessionControl.h>
#include <gps/GPSTransferAccount.h>

#include <chrono>
#include <functional>
#include <optional>

namespace host {

/// Returns whether the user has asked the program to stop.
using StopQuery = std::function<bool()>;

class OperationWatch {
public:
    using Clock = std::chrono::steady_clock;

    /// How long a unit may send position sentences instead of an answer.
    static constexpr std::chrono::seconds kNmeaPatience{4};

    /// How long a driver has to close its session down. Where the receiver answers, it takes 3 s.
    static constexpr std::chrono::seconds kClosePatience{5};

    /// The same if the receiver has never answered: there is nothing to restore.
    static constexpr std::chrono::seconds kNmeaClosePatience{2};

    /// What happens if only position sentences arrive on a serial line.
    enum class Listening {
        kNone,     ///< the operation uses no serial line
        kAndWait,  ///< the driver is asked to stop, and its end is waited for
        kAndLeave, ///< the driver is asked to stop; the host leaves after kNmeaClosePatience
    };

    /// @param driver         must outlive this object
    /// @param stopRequested  may be empty
    OperationWatch(gps::GPSPlugInProtocol& driver, StopQuery stopRequested, Listening listening);

    /// Asks the driver to stop if there is a reason to. To be called several times a second.
    /// @return  whether to go on waiting for the operation's end; always true for a driver that was
    ///          not asked to stop
    [[nodiscard]] bool waits(Clock::time_point now = Clock::now());

    /// Whether the driver was asked to stop, for whatever reason.
    [[nodiscard]] bool isStopAsked() const noexcept { return deadline_.has_value(); }

    /// Whether the driver was asked to stop at the user's request.
    [[nodiscard]] bool isStoppedByUser() const noexcept { return isStoppedByUser_; }

private:
    [[nodiscard]] bool isNmeaTooLong(Clock::time_point now);

    gps::GPSSessionControl* control_;  // null if the driver has none
    gps::GPSTransferAccount* account_; // null unless a serial line is listened to
    StopQuery stopRequested_;
    Listening listening_;
    std::optional<Clock::time_point> nmeaSince_;
    std::optional<Clock::time_point> deadline_; // once the driver was asked
    bool isStoppedByUser_ = false;
};

} // namespace host
