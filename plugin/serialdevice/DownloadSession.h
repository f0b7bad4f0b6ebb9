// SPDX-License-Identifier: MIT
// DownloadSession: one download from a receiver on a serial port, from finding its speed to
// restoring its state. The serial driver's worker creates one and runs it. [worker]

#pragma once

#include "CommandLink.h"

#include <gps/Error.h>
#include <gps/Value.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace gps {
class GPSOutputReceiver;
class OrvSerial;
} // namespace gps

namespace magellan {

class DownloadSession {
public:
    /// How many waypoints are kept for the routes. Receivers hold a few thousand.
    static constexpr std::size_t kMostWaypoints = 100'000;

    /// @param serial  a closed port
    /// @param status  gets the records
    /// @param work    "location": the port to open; "waypoints", "tracks", "routes": whether to
    ///                download these (no by default)
    /// All three must outlive this object.
    DownloadSession(gps::OrvSerial& serial, gps::GPSOutputReceiver& status,
                    const gps::Dictionary& work);

    /// Runs the whole session. Call it once. A receiver that never answers is not an error: its
    /// phases stay empty. The port stays open unless opening it failed.
    /// @return  why the port could not be opened
    /// @throws gps::SerialFailure  the line failed
    /// @throws gps::RangeError     a sentence was truncated
    /// @throws std::length_error   there were more than kMostWaypoints waypoints to keep, or the
    ///                             points of a route exceeded kRoutePointRoom; thrown after the
    ///                             receiver's state was restored
    /// @throws StatusFailure       the status object threw; likewise
    [[nodiscard]] std::optional<gps::Error> run();

private:
    // The steps of a session, in order.
    [[nodiscard]] std::optional<gps::Error> open();
    [[nodiscard]] std::optional<std::string> probe();
    void handshake(const std::optional<std::string>& reply);
    void switchTransferOn();
    void speedUp();
    void downloadAll();
    void downloadWaypoints();
    void keepForRoutes();
    void downloadTracks();
    void downloadRoutes();
    void closeDown();

    [[nodiscard]] bool isWanted(const char* kind) const;
    void changeSpeed(int bitsPerSecond);
    void logLineAfter(std::string_view step);
    template <typename Visit> void forEachReply(Visit visit);

    gps::OrvSerial& serial_;
    gps::GPSOutputReceiver& status_;
    const gps::Dictionary& work_;
    CommandLink link_;
    int foundSpeed_ = 0;        // bits per second at which the receiver answered; 0: never
    gps::GPSPoint point_;       // of the current sentence; a track point may take its day from
                                // the one before, so it is reset per phase only
    gps::Dictionary extras_;    // of the current sentence; cleared before each
    gps::Dictionary waypoints_; // records with their points by name, for the routes
};

} // namespace magellan
