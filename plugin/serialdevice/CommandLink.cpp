// SPDX-License-Identifier: MIT
// The log lines are part of the link's behaviour: people read recorded sessions in them.

#include "CommandLink.h"

#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/OrvUtils/OrvSerial.h>
#include <platform/System/Log.h>

namespace magellan {
namespace {

constexpr char kLineEnd[] = "\r\n";
constexpr float kTimeoutSeconds = 1.0F;

std::string acknowledgementOf(std::string_view body)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    const unsigned checksum = gps::NMEAUtils::checksumFromSentence(body);
    return {
        'P', 'M', 'G', 'N', 'C', 'S', 'M', ',', kDigits[checksum >> 4U], kDigits[checksum & 0xFU]};
}

} // namespace

void CommandLink::sendCommand(std::string_view body)
{
    serial_.sendString(gps::NMEAUtils::addChecksumToNMEASentence(body) + kLineEnd,
                       gps::StringEncoding::kASCII);
}

std::optional<std::string> CommandLink::readLine()
{
    return serial_.readStringTo(kLineEnd, kTimeoutSeconds);
}

std::optional<std::string> CommandLink::sendCommandAwaitResponse(std::string_view body)
{
    sendCommand(body);
    const auto line = readLine();
    const auto reply = line ? gps::NMEAUtils::checkAndTrimNMEASentence(*line) : std::nullopt;
    if (!reply)
        return std::nullopt;
    gps::logLine(std::string{body}.append(" => ").append(*reply));
    return std::string{*reply};
}

std::optional<std::string> CommandLink::readResponseWithChecksum()
{
    const auto line = readLine();
    if (!line)
        return std::nullopt;
    const auto reply = gps::NMEAUtils::checkAndTrimNMEASentence(*line);
    if (!reply) {
        gps::logLine(" -- invalid/no response -- " + *line + ' ');
        return std::nullopt;
    }
    sendCommand(acknowledgementOf(*reply)); // before anything else: the receiver waits for it
    gps::logLine(std::string{" -- "}.append(*reply));
    return std::string{*reply};
}

bool CommandLink::sendCommandWithChecksum(std::string_view body)
{
    const auto expected = acknowledgementOf(body);
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (sendCommandAwaitResponse(body) == expected)
            return true;
    }
    return false;
}

} // namespace magellan
