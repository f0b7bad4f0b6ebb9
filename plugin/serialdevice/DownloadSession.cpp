// SPDX-License-Identifier: MIT
// The steps follow the protocol one by one and never test whether a command was acknowledged: a
// receiver that misses one still gets the rest, close-down included.

#include "DownloadSession.h"

#include "../codec/RouteSentence.h"
#include "../codec/SentenceFields.h"
#include "../codec/TrackPointSentence.h"
#include "../codec/WayPointSentence.h"
#include "../common/DictionaryHelpers.h"
#include "../common/Errors.h"
#include "../common/GuardedStatus.h"
#include "../common/Records.h"
#include "../common/TrackAnnouncer.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/OrvUtils/OrvSerial.h>
#include <platform/System/Log.h>

#include <array>
#include <cstddef>
#include <stdexcept>

namespace magellan {
namespace {

constexpr int kOpeningSpeed = 4800;
constexpr int kDataSpeed = 115200;

/// The speeds to try, in bits per second, the likeliest first.
constexpr std::array kProbeSpeeds{4800, 115200, 1200, 9600, 19200, 57600};
constexpr int kProbeAttempts = 5; ///< at each speed

/// How many reads of a phase may fail before the phase ends.
constexpr int kReplyBudget = 5;

constexpr char kVersionAcknowledged[] = "PMGNCSM,28";
constexpr char kEnd[] = "PMGNCMD,END";

/// Splits a reply, which the link has checked already. Returns nullopt if there is no reply or it
/// is another sentence than `name`.
std::optional<SentenceFields> fieldsOf(const std::optional<std::string>& body,
                                       std::string_view name)
{
    return body ? SentenceFields::ofBody(*body, name) : std::nullopt;
}

std::string speedCommand(int bitsPerSecond)
{
    return "PMGNCMD,BAUD," + std::to_string(bitsPerSecond);
}

} // namespace

DownloadSession::DownloadSession(gps::OrvSerial& serial, gps::GPSOutputReceiver& status,
                                 const gps::Dictionary& work)
    : serial_(serial), status_(status), work_(work), link_(serial)
{}

std::optional<gps::Error> DownloadSession::run()
{
    if (auto error = open())
        return error;
    const auto reply = probe();
    handshake(reply);
    switchTransferOn();
    speedUp();
    try {
        downloadAll();
    } catch (const std::length_error&) { // the session's own limits; the line works
        closeDown();
        throw;
    } catch (const StatusFailure&) { // likewise
        closeDown();
        throw;
    }
    closeDown();
    return std::nullopt;
}

void DownloadSession::downloadAll()
{
    if (isWanted("waypoints") || isWanted("routes")) // a route only names its waypoints
        downloadWaypoints();
    if (isWanted("tracks"))
        downloadTracks();
    if (isWanted("routes"))
        downloadRoutes();
}

std::optional<gps::Error> DownloadSession::open()
{
    const std::string& location = *work_.findString("location");
    serial_.setBaudRate(kOpeningSpeed);
    if (serial_.openWithDevicePath(location.c_str()) == 0)
        return std::nullopt;
    return makeErrorAbout(ErrorCode::kSerialPort, location, "Couldn't open communications port %@",
                          "The port might be in use by another program");
}

/// Finds the speed at which the receiver answers. Returns its first answer; nullopt if there was
/// none at any speed.
std::optional<std::string> DownloadSession::probe()
{
    for (const int speed : kProbeSpeeds) {
        serial_.setBaudRate(speed);
        for (int attempt = 0; attempt < kProbeAttempts; ++attempt) {
            if (auto reply = link_.sendCommandAwaitResponse("PMGNCMD,VERSION")) {
                foundSpeed_ = speed;
                return reply;
            }
        }
    }
    return std::nullopt;
}

/// A receiver that acknowledges the question has its handshaking on, and its version is still to
/// come. Any other receiver does not acknowledge commands yet, so HANDON is not waited for.
void DownloadSession::handshake(const std::optional<std::string>& reply)
{
    if (reply == kVersionAcknowledged)
        (void)link_.readLine();
    else
        link_.sendCommand("PMGNCMD,HANDON");
}

void DownloadSession::switchTransferOn()
{
    link_.sendCommandWithChecksum("PMGNCMD,TON");
    logLineAfter("TON");
}

void DownloadSession::speedUp()
{
    changeSpeed(kDataSpeed);
    logLineAfter("TON"); // deliberately the text of the step before
}

void DownloadSession::downloadWaypoints()
{
    const bool isReported = isWanted("waypoints");
    const bool isKept = isWanted("routes");
    link_.sendCommandWithChecksum("PMGNCMD,WAYPOINT");
    if (isReported)
        status_.startTransfer(gps::TransferKind::kWaypoints);
    forEachReply([&](const std::optional<std::string>& body) {
        const auto fields = fieldsOf(body, kWayPointSentence);
        if (!fields)
            return;
        readWayPoint(*fields, point_, &extras_);
        if (isReported)
            status_.wayPoint(point_, extras_);
        if (isKept)
            keepForRoutes();
    });
    if (isReported)
        status_.endTransfer(gps::TransferKind::kWaypoints);
}

/// This map is the only state that grows with input, so it is capped against a receiver that never
/// stops sending.
void DownloadSession::keepForRoutes()
{
    keepByName(extras_, point_, waypoints_);
    if (waypoints_.size() > kMostWaypoints)
        throw std::length_error("more waypoints than any receiver holds");
}

void DownloadSession::downloadTracks()
{
    link_.sendCommandWithChecksum("PMGNCMD,TRACK,2");
    status_.startTransfer(gps::TransferKind::kTracks);
    TrackAnnouncer announcer{status_};
    forEachReply([&](const std::optional<std::string>& body) {
        const auto fields = fieldsOf(body, kTrackPointSentence);
        if (!fields)
            return;
        readTrackPoint(*fields, point_, &extras_);
        announcer.beforePoint(extras_);
        status_.trackPoint(point_, extras_);
    });
    status_.endTransfer(gps::TransferKind::kTracks);
}

void DownloadSession::downloadRoutes()
{
    gps::Array points;
    gps::Dictionary info;
    std::size_t room = kRoutePointRoom;
    link_.sendCommandWithChecksum("PMGNCMD,ROUTE");
    status_.startTransfer(gps::TransferKind::kRoutes);
    forEachReply([&](const std::optional<std::string>& body) {
        gps::logLine(body.value_or("(null)"));
        const auto fields = fieldsOf(body, kRouteSentence);
        if (!fields || !readRoute(*fields, points, waypoints_, info, room))
            return;
        reportRoute(info, points, status_);
        points.clear();
        info.clear();
        room = kRoutePointRoom;
    });
    status_.endTransfer(gps::TransferKind::kRoutes);
}

/// Restores the receiver's state. If it was never found, the speed to restore is 0, which is sent
/// and set like any other.
void DownloadSession::closeDown()
{
    link_.sendCommandWithChecksum("PMGNCMD,TOFF");
    logLineAfter("TOFF");
    link_.sendCommandWithChecksum("PMGNCMD,HANDOFF");
    logLineAfter("HANDOFF");
    changeSpeed(foundSpeed_);
    logLineAfter("Setting rate back");
}

bool DownloadSession::isWanted(const char* kind) const
{
    return GetBoolValueForKey(&work_, kind, false);
}

void DownloadSession::changeSpeed(int bitsPerSecond)
{
    link_.sendCommandWithChecksum(speedCommand(bitsPerSecond));
    serial_.setBaudRate(bitsPerSecond);
}

/// Some receivers send another line after a switch. It is read here so that it is not taken for the
/// reply to the next command.
void DownloadSession::logLineAfter(std::string_view step)
{
    if (const auto line = link_.readLine())
        gps::logLine(std::string{"Response after "}.append(step).append(" = ").append(*line));
}

/// Reads replies until END, or until kReplyBudget reads have failed, in a row or not.
/// @param visit  gets the body of each reply, END included, and nullopt for each failed read. The
///               extras are empty at each call
template <typename Visit> void DownloadSession::forEachReply(Visit visit)
{
    point_ = {};
    int budget = kReplyBudget;
    std::optional<std::string> reply;
    do {
        reply = link_.readResponseWithChecksum();
        if (!reply)
            --budget;
        extras_.clear();
        visit(reply);
    } while (reply != kEnd && budget > 0);
}

} // namespace magellan
