// SPDX-License-Identifier: MIT
// Damage is deterministic, so that a failing test can be repeated.

#include "Damage.h"

#include <platform/GPSUtilities/NMEAUtils.h>

#include <random>

namespace simulator {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

std::string whole(std::string_view body)
{
    return gps::NMEAUtils::addChecksumToNMEASentence(body).append(kLineEnd);
}

std::string noise()
{
    std::minstd_rand numbers; // the same sequence on every system
    std::string bytes;
    while (bytes.size() < 60)
        bytes += static_cast<char>(numbers() >> 8U);
    return bytes;
}

// A valid sentence that acknowledges another checksum.
std::string wrongAcknowledgement(std::string_view body)
{
    std::string wrong{body};
    wrong.back() = wrong.back() == '0' ? '1' : '0';
    return wrong;
}

std::string longForm(std::string_view body)
{
    constexpr std::size_t kFrame = 4; // "$", "*" and the checksum
    std::string padded{body};
    padded += ',';
    padded.resize(kLongSentence - kFrame, 'X');
    return whole(padded);
}

} // namespace

std::string acknowledgementOf(std::string_view body)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const unsigned sum = gps::NMEAUtils::checksumFromSentence(body);
    return std::string{"PMGNCSM,"} + kDigits[sum / 16] + kDigits[sum % 16];
}

std::string wireForm(std::string_view body, const Fault* fault)
{
    auto line = whole(body);
    if (fault == nullptr)
        return line;
    const auto middle = line.size() / 2;
    switch (fault->kind) {
    case FaultKind::kWrongAck: // affects acknowledgements only
        return body.substr(0, 8) == "PMGNCSM," ? whole(wrongAcknowledgement(body)) : line;
    case FaultKind::kGarble:
        line[middle] = static_cast<char>(line[middle] ^ 1);
        return line;
    case FaultKind::kTruncate:
        return line.substr(0, middle);
    case FaultKind::kNoise:
        return noise().append(kLineEnd).append(line);
    case FaultKind::kNul:
        return std::string(3, '\0').append(line.insert(middle, 1, '\0'));
    case FaultKind::kLong:
        return longForm(body);
    default:
        return line;
    }
}

} // namespace simulator
