// SPDX-License-Identifier: MIT
// DownloadSession: one download from a receiver on a serial port, from finding its speed to
// restoring its state. The serial driver's worker creates one and runs it. [worker]

#pragma once

#include "../codec/RouteAssembler.h"
#include "CommandLink.h"

#include <gps/Error.h>
#include <gps/GPSTransferAccount.h>
#include <gps/Value.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gps {
class GPSOutputReceiver;
class OrvSerial;
} // namespace gps

namespace magellan {

class OperationAccount;
class OperationMonitor;
class SentenceFields;

class DownloadSession {
public:
    /// How many waypoints are kept for the routes. Receivers hold a few thousand.
    static constexpr std::size_t kMostWaypoints = 100'000;

    /// @param serial  a closed port
    /// @param status  gets the records
    /// @param work    "location": the port to open; "waypoints", "tracks", "routes": whether to
    ///                download these (no by default)
    /// @param monitor asks for the end of the session, which then closes down at once
    /// @param account gets the session's commands and phases
    /// All of them must outlive this object.
    DownloadSession(gps::OrvSerial& serial, gps::GPSOutputReceiver& status,
                    const gps::Dictionary& work, OperationMonitor& monitor,
                    OperationAccount& account);

    /// Runs the whole session. Call it once. A receiver that never answers is not an error: its
    /// phases stay empty. The port stays open unless opening it failed.
    /// @return  why the port could not be opened, or that the host has stopped the session. The
    ///          receiver's state was restored then
    /// @throws gps::SerialFailure  the line failed
    /// @throws gps::RangeError     a sentence was truncated
    /// @throws std::length_error   there were more than kMostWaypoints waypoints to keep; thrown
    ///                             after the receiver's state was restored
    /// @throws StatusFailure       the status object threw; likewise
    [[nodiscard]] std::optional<gps::Error> run();

private:
    struct Phase;
    static const Phase kWaypointPhase;
    static const Phase kTrackPhase;
    static const Phase kRoutePhase;

    // The steps of a session, in order.
    [[nodiscard]] std::optional<gps::Error> open();
    void downloadFromReceiver();
    [[nodiscard]] std::optional<std::string> probe();
    void keepVersion(const std::optional<SentenceFields>& fields);
    void handshake(const std::optional<std::string>& reply);
    void switchTransferOn();
    void speedUp();
    void downloadWaypoints();
    void keepForRoutes();
    void downloadTracks();
    void downloadRoutes();
    void closeDown();
    void switchBack(std::string_view command, std::string_view step);
    void sendClosing(std::string_view body);

    [[nodiscard]] bool isRequested(const Phase& phase) const;
    [[nodiscard]] bool isNeeded(const Phase& phase) const;
    void changeSpeed(int bitsPerSecond);
    void logLineAfter(std::string_view step);

    template <typename Visit> void forEachSentence(const Phase& phase, Visit visit);
    template <typename Visit>
    gps::PhaseEnd readPhase(const Phase& phase, gps::LineAccount& lines, Visit& visit);
    template <typename Visit> void takeReply(const Phase& phase, const std::string& body,
                                             gps::LineAccount& lines, Visit& visit);

    gps::OrvSerial& serial_;
    gps::GPSOutputReceiver& status_;
    const gps::Dictionary& work_;
    OperationMonitor& monitor_;
    OperationAccount& account_;
    CommandLink link_;
    int foundSpeed_ = 0;       // bits per second at which the receiver answered; 0: never
    bool isClosing_ = false;   // the receiver's state is being restored
    bool isAnswering_ = false; // a receiver has answered, and still does while it is restored
    gps::GPSPoint point_;      // of the current sentence; a track point may take its day from
                               // the one before, so it is reset per phase only
    gps::Dictionary extras_;   // of the current sentence; cleared before each
    std::string previous_;     // the last sentence of the current phase's kind
    RouteAssembler routes_;    // with the waypoints
};

} // namespace magellan
