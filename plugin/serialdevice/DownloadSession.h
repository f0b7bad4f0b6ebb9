// SPDX-License-Identifier: MIT
// DownloadSession: one download from a receiver on a serial port, from finding its speed to
// switching everything off again. The serial driver's worker runs it. [worker]

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
    static constexpr std::size_t kMostWaypoints =
        100'000; ///< that are kept for routes; receivers hold some thousand

    /// @param serial  a closed port
    /// @param work    "location": the port to open; "waypoints", "tracks", "routes": what to
    /// download (absent: not) All three outlive this object.
    DownloadSession(gps::OrvSerial& serial, gps::GPSOutputReceiver& status,
                    const gps::Dictionary& work);

    /// Runs the whole session. A receiver that never answers, or not as it should, is no failure:
    /// its phases stay empty.
    /// @return  why the port could not be opened. The port is left open otherwise
    /// @throws  gps::SerialFailure      the line fails
    /// @throws  gps::RangeError         a sentence is too short
    /// @throws  std::length_error       there is no end of waypoints to keep for the routes, or of
    /// a route's points
    [[nodiscard]] std::optional<gps::Error> run();

private:
    // The session's states, in their order.
    [[nodiscard]] std::optional<gps::Error> open();
    [[nodiscard]] std::optional<std::string> probe();
    void handshake(const std::optional<std::string>& reply);
    void switchTransferOn();
    void speedUp();
    void downloadWaypoints();
    void keepForRoutes();
    void downloadTracks();
    void downloadRoutes();
    void closeDown();

    [[nodiscard]] bool isWanted(const char* kind) const;
    void changeSpeed(int bitsPerSecond);
    void logLineAfter(std::string_view step);
    template <typename Take> void forEachReply(Take take);

    gps::OrvSerial& serial_;
    gps::GPSOutputReceiver& status_;
    const gps::Dictionary& work_;
    CommandLink link_;
    int foundSpeed_ = 0;  // bits per second at which the receiver answered; 0: it never did
    gps::GPSPoint point_; // of the sentence at hand; one for a phase, since a track line may take
                          // its day from the line before
    gps::Dictionary extras_;    // what else the sentence at hand holds; emptied before each one
    gps::Dictionary waypoints_; // name to record with its point, for the routes
};

} // namespace magellan
