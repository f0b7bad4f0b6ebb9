// SPDX-License-Identifier: MIT
// The log lines are part of the link's behaviour: people read recorded sessions in them.

#include "CommandLink.h"

#include "../common/LineAccounts.h"
#include "../common/Lines.h"
#include "../common/OperationAccount.h"
#include "../common/OperationMonitor.h"

#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/OrvUtils/OrvSerial.h>
#include <platform/System/Log.h>

#include <algorithm>
#include <array>

namespace magellan {
namespace {

constexpr char kLineEnd[] = "\r\n";
constexpr float kTimeoutSeconds = 1.0F;

constexpr int kLastAttempts = 2;    // of a command of a session that is being stopped
constexpr int kMostStaleLines = 16; // to read past after each

std::string acknowledgementOf(std::string_view body)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    const unsigned checksum = gps::NMEAUtils::checksumFromSentence(body);
    return {
        'P', 'M', 'G', 'N', 'C', 'S', 'M', ',', kDigits[checksum >> 4U], kDigits[checksum & 0xFU]};
}

void logReply(std::string_view body, std::string_view reply)
{
    gps::logLine(std::string{body}.append(" => ").append(reply));
}

} // namespace

void CommandLink::sendCommand(std::string_view body)
{
    serial_.sendString(gps::NMEAUtils::addChecksumToNMEASentence(body) + kLineEnd,
                       gps::StringEncoding::kASCII);
}

void CommandLink::stopIfRequested() const
{
    if (!isClosing_ && monitor_.stopRequested())
        throw StopRequest{};
}

std::optional<std::string> CommandLink::readLine()
{
    stopIfRequested();
    return readReply();
}

/// Reads a line even if the session is to stop: what has been sent may change the receiver's state,
/// so its answer must be known.
std::optional<std::string> CommandLink::readReply()
{
    const auto before = serial_.bytesReceived();
    auto line = serial_.readStringTo(kLineEnd, kTimeoutSeconds);
    wasSilent_ = !line && serial_.bytesReceived() == before;
    if (!wasSilent_) {
        const auto body = line ? gps::NMEAUtils::checkAndTrimNMEASentence(*line) : std::nullopt;
        monitor_.hear(body ? voiceOf(*body) : gps::LineVoice::kNoise);
    }
    return line;
}

std::optional<std::string> CommandLink::sendCommandAwaitResponse(std::string_view body)
{
    stopIfRequested();
    sendCommand(body);
    const auto line = readReply();
    const auto reply = line ? gps::NMEAUtils::checkAndTrimNMEASentence(*line) : std::nullopt;
    if (!reply)
        return std::nullopt;
    logReply(body, *reply);
    return std::string{*reply};
}

std::optional<std::string> CommandLink::readResponseWithChecksum()
{
    defect_.reset();
    const auto line = readLine();
    if (!line)
        return std::nullopt;
    const auto reply = gps::NMEAUtils::checkAndTrimNMEASentence(*line);
    if (!reply) {
        defect_ = defectOf(*line);
        gps::logLine(" -- invalid/no response -- " + *line + ' ');
        return std::nullopt;
    }
    sendCommand(acknowledgementOf(*reply)); // before anything else: the receiver waits for it
    gps::logLine(std::string{" -- "}.append(*reply));
    return std::string{*reply};
}

gps::CommandAccount& CommandLink::addCommand(std::string_view body, gps::CommandPurpose purpose)
{
    return account_.addCommand(body, isClosing_ ? gps::CommandPurpose::kRestore : purpose);
}

bool CommandLink::sendCommandWithChecksum(std::string_view body, gps::CommandPurpose purpose)
{
    const auto expected = acknowledgementOf(body);
    auto& command = addCommand(body, purpose);
    while (!command.acknowledged && command.attempts < kAttempts) {
        ++command.attempts;
        command.acknowledged = sendCommandAwaitResponse(body) == expected;
    }
    return command.acknowledged;
}

bool CommandLink::sendLastCommand(std::string_view body)
{
    const auto expected = acknowledgementOf(body);
    auto& command = addCommand(body, gps::CommandPurpose::kRestore);
    while (!command.acknowledged && command.attempts < kLastAttempts) {
        ++command.attempts;
        sendCommand(body);
        for (int i = 0; i < kMostStaleLines && !command.acknowledged; ++i) {
            const auto line = readLine();
            if (!line)
                break;
            const auto reply = gps::NMEAUtils::checkAndTrimNMEASentence(*line);
            command.acknowledged = reply == expected;
            if (command.acknowledged)
                logReply(body, *reply);
        }
    }
    return command.acknowledged;
}

gps::LineVoice voiceOf(std::string_view body) noexcept
{
    constexpr std::array<std::string_view, 7> kReceiverSentences{
        "PMGNCSM,", "PMGNVER,", "PMGNWPL,", "PMGNTRK,", "PMGNRTE,", "PMGNGEO,", kEndSentence};
    if (std::any_of(kReceiverSentences.begin(), kReceiverSentences.end(),
                    [body](std::string_view each) { return body.starts_with(each); }))
        return gps::LineVoice::kReceiver;
    // Sentences of the standard; those of manufacturers begin with "P".
    return body.starts_with('P') ? gps::LineVoice::kNoise : gps::LineVoice::kNmea;
}

} // namespace magellan
