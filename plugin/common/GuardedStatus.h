// SPDX-License-Identifier: MIT
// GuardedStatus: the one way in which operations call a host's status object, so that what that
// object throws is never mistaken for a failure of the operation itself. One object per operation;
// called on the operation's thread. [worker], or [host thread] in an import.

#pragma once

#include <gps/GPSOutputReceiver.h>

#include <cstdint>
#include <exception>
#include <string_view>
#include <utility>

namespace magellan {

/// What a status object threw. Not a std::exception, so that no handler of the operation's own
/// failures catches it.
class StatusFailure {
public:
    explicit StatusFailure(std::exception_ptr cause) : cause_(std::move(cause)) {}

    [[nodiscard]] const std::exception_ptr& cause() const noexcept { return cause_; }

private:
    std::exception_ptr cause_;
};

/// Each call throws a StatusFailure if the host's object throws.
class GuardedStatus final : public gps::GPSOutputReceiver {
public:
    /// @param status  must outlive this object
    explicit GuardedStatus(gps::GPSOutputReceiver& status) : status_(status) {}

    /// Ends the operation after a StatusFailure: logs it, and reports `gpsStateChange:` 0 unless
    /// that has been reported. Drops whatever the host's object throws.
    void endAfterFailure() noexcept;

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

private:
    gps::GPSOutputReceiver& status_;
    bool ended_ = false; // gpsStateChange() 0 was reported
};

} // namespace magellan
