// SPDX-License-Identifier: MIT

#include "DownloadSession.h"

#include "../codec/RouteSentence.h"
#include "../codec/TrackPointSentence.h"
#include "../codec/WayPointSentence.h"
#include "../common/DictionaryHelpers.h"
#include "../common/Errors.h"
#include "../common/Records.h"
#include "../common/TrackNames.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/OrvUtils/OrvSerial.h>
#include <platform/System/Log.h>

#include <array>
#include <cstddef>
#include <stdexcept>

namespace magellan {
namespace {

constexpr int kOpeningSpeed = 4800;
constexpr int kDataSpeed = 115200;

/// The speeds at which a receiver may be found, the likeliest first. Bits per second.
constexpr std::array kProbeSpeeds{4800, 115200, 1200, 9600, 19200, 57600};
constexpr int kProbeAttempts = 5; ///< at each speed

constexpr int kReplyBudget = 5; ///< reads of a phase that may bring nothing

constexpr char kVersionAcknowledged[] = "PMGNCSM,28";
constexpr char kEnd[] = "PMGNCMD,END";

std::string speedCommand(int bitsPerSecond)
{
    return "PMGNCMD,BAUD," + std::to_string(bitsPerSecond);
}

} // namespace

DownloadSession::DownloadSession(gps::OrvSerial& serial, gps::GPSOutputReceiver& status,
                                 const gps::Dictionary& work)
    : serial_(serial), status_(status), work_(work), link_(&serial)
{}

std::optional<gps::Error> DownloadSession::run()
{
    if (auto error = open())
        return error;
    const auto reply = probe();
    handshake(reply);
    switchTransferOn();
    speedUp();
    if (isWanted("waypoints") || isWanted("routes")) // a route only names its waypoints
        downloadWaypoints();
    if (isWanted("tracks"))
        downloadTracks();
    if (isWanted("routes"))
        downloadRoutes();
    closeDown();
    return std::nullopt;
}

std::optional<gps::Error> DownloadSession::open()
{
    const std::string& location = *work_.findString("location");
    serial_.setBaudRate(kOpeningSpeed);
    if (serial_.openWithDevicePath(location.c_str()) == 0)
        return std::nullopt;
    return makeError(ErrorCode::kSerialPort,
                     filledText("Couldn't open communications port %@", location),
                     "The port might be in use by another program");
}

/// Looks for the speed at which the receiver answers. @return  its first answer; none: it never
/// gave one
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

/// A receiver that acknowledged has its handshaking on, and its version is still to come. Any other
/// one does not acknowledge yet, so this is not waited for either.
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
    logLineAfter("TON"); // the text that those who read such logs look for
}

void DownloadSession::downloadWaypoints()
{
    const bool isReported = isWanted("waypoints");
    const bool isKept = isWanted("routes");
    link_.sendCommandWithChecksum("PMGNCMD,WAYPOINT");
    if (isReported)
        status_.startTransfer(gps::TransferKind::kWaypoints);
    forEachReply([&](const std::optional<std::string>& /*body*/, const std::string& sentence) {
        if (!interpretWayPointSentence(sentence, point_, &extras_))
            return;
        if (isReported)
            status_.wayPoint(point_, extras_);
        if (isKept)
            keepForRoutes();
    });
    if (isReported)
        status_.endTransfer(gps::TransferKind::kWaypoints);
}

/// The one thing that grows with what a receiver sends: so one that never stops sending must not
/// get on for ever.
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
    TrackNames names{status_};
    forEachReply([&](const std::optional<std::string>& /*body*/, const std::string& sentence) {
        if (!interpretTrackPointSentence(sentence, point_, &extras_))
            return;
        names.pointWith(extras_);
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
    forEachReply([&](const std::optional<std::string>& body, const std::string& sentence) {
        gps::logLine(body.value_or("(null)"));
        if (!interpretRouteSentence(sentence, points, waypoints_, info, room))
            return;
        reportRoute(info, points, status_);
        points.clear();
        info.clear();
        room = kRoutePointRoom;
    });
    status_.endTransfer(gps::TransferKind::kRoutes);
}

/// Leaves the receiver as it was found. Where it was not found at all, its speed is set to 0 like
/// to any other.
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

/// Some receivers say something more after a switch: nothing that the session needs, but it must
/// not be taken for an answer.
void DownloadSession::logLineAfter(std::string_view step)
{
    if (const auto line = link_.readLine())
        gps::logLine(std::string{"Response after "}.append(step).append(" = ").append(*line));
}

/// Reads replies until the receiver's END, or until the budget of reads that bring nothing is
/// spent: good ones do not restore it.
/// @param take  gets the body (none: nothing came) and the sentence (empty then); the extras are
/// empty at each call
template <typename Take> void DownloadSession::forEachReply(Take take)
{
    point_ = {};
    int budget = kReplyBudget;
    std::optional<std::string> reply;
    do {
        reply = link_.readResponseWithChecksum();
        if (!reply)
            --budget;
        extras_.clear();
        take(reply, reply ? gps::NMEAUtils::addChecksumToNMEASentence(*reply) : std::string{});
    } while (reply != kEnd && budget > 0);
}

} // namespace magellan
