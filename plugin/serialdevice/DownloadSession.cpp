// SPDX-License-Identifier: MIT
// The steps follow the protocol one by one and never test whether a command was acknowledged: a
// receiver that misses one still gets the rest, close-down included. The account records all of it.

#include "DownloadSession.h"

#include "../codec/RouteSentence.h"
#include "../codec/SentenceFields.h"
#include "../codec/TrackPointSentence.h"
#include "../codec/WayPointSentence.h"
#include "../common/Errors.h"
#include "../common/GuardedStatus.h"
#include "../common/LineAccounts.h"
#include "../common/Lines.h"
#include "../common/OperationAccount.h"
#include "../common/OperationMonitor.h"
#include "../common/TrackAnnouncer.h"

#include <gps/Characters.h>
#include <gps/DictionaryHelpers.h>
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
constexpr char kVersion[] = "PMGNVER";

std::string speedCommand(int bitsPerSecond)
{
    return "PMGNCMD,BAUD," + std::to_string(bitsPerSecond);
}

} // namespace

/// One data phase: a command, and sentences of one kind in answer to it.
struct DownloadSession::Phase {
    const char* kind; ///< the option that requests it, and its name in the account
    std::string_view command;
    std::string_view sentence;
    bool logsReplies = false;
};

constexpr DownloadSession::Phase DownloadSession::kWaypointPhase{"waypoints", "PMGNCMD,WAYPOINT",
                                                                 kWayPointSentence};
constexpr DownloadSession::Phase DownloadSession::kTrackPhase{"tracks", "PMGNCMD,TRACK,2",
                                                              kTrackPointSentence};
constexpr DownloadSession::Phase DownloadSession::kRoutePhase{"routes", "PMGNCMD,ROUTE",
                                                              kRouteSentence, true};

DownloadSession::DownloadSession(gps::OrvSerial& serial, gps::GPSOutputReceiver& status,
                                 const gps::Dictionary& work, OperationMonitor& monitor,
                                 OperationAccount& account)
    : serial_(serial), status_(status), work_(work), monitor_(monitor), account_(account),
      link_(serial, monitor, account)
{}

std::optional<gps::Error> DownloadSession::run()
{
    for (const auto* phase : {&kWaypointPhase, &kTrackPhase, &kRoutePhase}) {
        if (isNeeded(*phase))
            (void)account_.phase(phase->kind);
    }
    if (auto error = open())
        return error;
    try {
        downloadFromReceiver();
    } catch (const std::length_error&) { // the session's own limits; the line works
        closeDown();
        throw;
    } catch (const StatusFailure&) { // likewise
        closeDown();
        throw;
    } catch (const StopRequest&) { // likewise
        closeDown();
        account_.setStopped();
        return gps::Error{kErrorDomain, static_cast<std::int32_t>(ErrorCode::kSessionInterrupted)};
    }
    closeDown();
    return std::nullopt;
}

void DownloadSession::downloadFromReceiver()
{
    monitor_.describe(*work_.findString("location"), {}); // it may be another receiver by now
    const auto reply = probe();
    if (reply)
        keepVersion(SentenceFields::ofBody(*reply, kVersion));
    handshake(reply);
    switchTransferOn();
    speedUp();
    if (isNeeded(kWaypointPhase))
        downloadWaypoints();
    if (isNeeded(kTrackPhase))
        downloadTracks();
    if (isNeeded(kRoutePhase))
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
    constexpr std::string_view kQuestion = "PMGNCMD,VERSION";
    auto& command = account_.addCommand(kQuestion, gps::CommandPurpose::kTransfer);
    for (const int speed : kProbeSpeeds) {
        serial_.setBaudRate(speed);
        for (int attempt = 0; attempt < kProbeAttempts; ++attempt) {
            ++command.attempts;
            if (auto reply = link_.sendCommandAwaitResponse(kQuestion)) {
                command.acknowledged = voiceOf(*reply) == gps::LineVoice::kReceiver;
                foundSpeed_ = speed;
                return reply;
            }
        }
    }
    return std::nullopt;
}

/// Keeps what the receiver's version sentence says: "PMGNVER", a number of its type, its firmware,
/// and its name.
void DownloadSession::keepVersion(const std::optional<SentenceFields>& fields)
{
    constexpr std::size_t kFirmware = 2;
    constexpr std::size_t kModel = 3;
    if (!fields)
        return;
    const auto field = [&fields](std::size_t index) -> std::optional<std::string> {
        const auto text = index < fields->count() ? gps::trimmed(fields->at(index)) : "";
        return text.empty() ? std::nullopt : std::optional{std::string{text}};
    };
    monitor_.describe(*work_.findString("location"), {field(kModel), field(kFirmware)});
}

/// A receiver that acknowledges the question has its handshaking on, and its version is still to
/// come. Any other receiver does not acknowledge commands yet, so HANDON is not waited for.
void DownloadSession::handshake(const std::optional<std::string>& reply)
{
    if (reply != kVersionAcknowledged)
        link_.sendCommand("PMGNCMD,HANDON");
    else if (const auto line = link_.readLine())
        keepVersion(SentenceFields::ofSentence(*line, kVersion));
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
    const bool isReported = isRequested(kWaypointPhase);
    const bool isKept = isRequested(kRoutePhase);
    link_.sendCommandWithChecksum(kWaypointPhase.command);
    if (isReported)
        status_.startTransfer(gps::TransferKind::kWaypoints);
    forEachSentence(kWaypointPhase, [&](const SentenceFields& fields) {
        readWayPoint(fields, point_, &extras_);
        if (isReported)
            status_.wayPoint(point_, extras_);
        if (isKept)
            keepForRoutes();
    });
    if (isReported)
        status_.endTransfer(gps::TransferKind::kWaypoints);
}

/// The kept waypoints are the only state that grows with input, so they are capped against a
/// receiver that never stops sending.
void DownloadSession::keepForRoutes()
{
    routes_.addWayPoint(extras_, point_);
    if (routes_.wayPointCount() > kMostWaypoints)
        throw std::length_error("more waypoints than any receiver holds");
}

void DownloadSession::downloadTracks()
{
    link_.sendCommandWithChecksum(kTrackPhase.command);
    status_.startTransfer(gps::TransferKind::kTracks);
    TrackAnnouncer announcer{status_};
    forEachSentence(kTrackPhase, [&](const SentenceFields& fields) {
        readTrackPoint(fields, point_, &extras_);
        announcer.beforePoint(extras_);
        status_.trackPoint(point_, extras_);
    });
    status_.endTransfer(gps::TransferKind::kTracks);
}

void DownloadSession::downloadRoutes()
{
    auto& lines = account_.phase(kRoutePhase.kind).lines;
    link_.sendCommandWithChecksum(kRoutePhase.command);
    status_.startTransfer(gps::TransferKind::kRoutes);
    forEachSentence(kRoutePhase, [&](const SentenceFields& fields) {
        if (const auto route = routes_.addSentence(fields, lines.seen + 1, lines))
            reportRoute(*route, status_);
    });
    routes_.finish(lines);
    status_.endTransfer(gps::TransferKind::kRoutes);
}

/// Restores the receiver's state. If it was never found, the speed to restore is 0, which is sent
/// and set like any other. A session that is being stopped does not wait for a receiver that does
/// not answer, nor for the lines that may follow its answers.
void DownloadSession::closeDown()
{
    link_.beginClosing();
    isClosing_ = true;
    isAnswering_ = monitor_.voice() == gps::LineVoice::kReceiver;
    if (monitor_.stopRequested() && foundSpeed_ == 0)
        return; // no receiver was found
    switchBack("PMGNCMD,TOFF", "TOFF");
    switchBack("PMGNCMD,HANDOFF", "HANDOFF");
    const auto command = speedCommand(foundSpeed_);
    sendClosing(command);
    serial_.setBaudRate(foundSpeed_);
    logLineAfter("Setting rate back");
}

void DownloadSession::switchBack(std::string_view command, std::string_view step)
{
    sendClosing(command);
    logLineAfter(step);
}

void DownloadSession::sendClosing(std::string_view body)
{
    if (!monitor_.stopRequested())
        link_.sendCommandWithChecksum(body);
    else if (isAnswering_)
        isAnswering_ = link_.sendLastCommand(body);
    else
        link_.sendCommand(body);
}

bool DownloadSession::isRequested(const Phase& phase) const
{
    return GetBoolValueForKey(&work_, phase.kind, false);
}

/// A route only names its waypoints.
bool DownloadSession::isNeeded(const Phase& phase) const
{
    return isRequested(phase) || (&phase == &kWaypointPhase && isRequested(kRoutePhase));
}

void DownloadSession::changeSpeed(int bitsPerSecond)
{
    link_.stopIfRequested();
    try {
        link_.sendCommandWithChecksum(speedCommand(bitsPerSecond), gps::CommandPurpose::kSpeedUp);
    } catch (const StopRequest&) { // the receiver may have changed its speed already
        serial_.setBaudRate(bitsPerSecond);
        throw;
    }
    serial_.setBaudRate(bitsPerSecond);
}

/// Some receivers send another line after a switch. It is read here so that it is not taken for the
/// reply to the next command.
void DownloadSession::logLineAfter(std::string_view step)
{
    if (isClosing_ && monitor_.stopRequested())
        return;
    if (const auto line = link_.readLine())
        gps::logLine(std::string{"Response after "}.append(step).append(" = ").append(*line));
}

/// Reads the sentences of a phase and records how it ended.
/// @param visit  gets the fields of each sentence of the phase's kind. The extras are empty then
template <typename Visit> void DownloadSession::forEachSentence(const Phase& phase, Visit visit)
{
    auto& account = account_.phase(phase.kind);
    point_ = {};
    previous_.clear();
    account.end = gps::PhaseEnd::kFailed; // unless it ends in another way
    try {
        account.end = readPhase(phase, account.lines, visit);
    } catch (const StopRequest&) {
        account.end = gps::PhaseEnd::kStopped;
        throw;
    }
}

/// Reads replies until END, or until kReplyBudget reads have failed, in a row or not.
template <typename Visit>
gps::PhaseEnd DownloadSession::readPhase(const Phase& phase, gps::LineAccount& lines, Visit& visit)
{
    int silent = 0;
    int damaged = 0;
    while (silent + damaged < kReplyBudget) {
        const auto reply = link_.readResponseWithChecksum();
        if (phase.logsReplies)
            gps::logLine(reply.value_or("(null)"));
        if (reply) {
            if (reply == kEndSentence)
                return gps::PhaseEnd::kEnd;
            takeReply(phase, *reply, lines, visit);
            continue;
        }
        ++(link_.wasSilent() ? silent : damaged);
        if (const auto defect = link_.defect())
            addSkipped(lines, lines.seen + 1, *defect);
    }
    return silent > damaged ? gps::PhaseEnd::kSilence : gps::PhaseEnd::kDamage;
}

template <typename Visit> void DownloadSession::takeReply(const Phase& phase,
                                                          const std::string& body,
                                                          gps::LineAccount& lines, Visit& visit)
{
    const auto fields = SentenceFields::ofBody(body, phase.sentence);
    const auto number = lines.seen + 1;
    if (!fields) {
        if (!isProtocolSentence(body))
            addSkipped(lines, number, gps::SkipReason::kOtherKind);
        return;
    }
    extras_.clear();
    try {
        visit(*fields);
    } catch (const gps::RangeError&) {
        addSkipped(lines, number, gps::SkipReason::kTooFewFields);
        throw;
    }
    if (body == previous_)
        addSkipped(lines, number, gps::SkipReason::kRepeated);
    else
        addAccepted(lines);
    previous_ = body;
}

} // namespace magellan
