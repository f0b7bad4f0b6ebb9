// SPDX-License-Identifier: MIT
// Track points: the only kind with times, and the only one whose altitude may be in feet.

#include "TrackPointSentence.h"

#include "PositionFields.h"
#include "SentenceFields.h"
#include "SentenceText.h"

#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace magellan {
namespace {

namespace NMEAUtils = gps::NMEAUtils;

// Field indices:
//   0       1        2 3         4 5     6 7         8 9    10
//   PMGNTRK,4605.979,N,00713.315,E,01529,M,071548.24,A,NAME,110808
enum Field : std::size_t {
    kAltitudeUnit = kPositionFields,
    kTimeOfDay,
    kStatus,
    kTrackName,
    kDate,
};

constexpr int kAltitudeWidth = 5;
constexpr double kFeetPerMetre = 3.2808399;

/// Appends the fields from the time of day on: "071548.00,A,,110808".
void appendTimeAndDate(std::string& body, std::int64_t timestamp)
{
    constexpr std::string_view kBetween = ",A,,";
    std::array<char, NMEAUtils::kNMEATimeSize + kBetween.size() + NMEAUtils::kNMEADateSize> text;
    char* const between = text.data() + NMEAUtils::kNMEATimeSize;
    char* const date = std::copy(kBetween.begin(), kBetween.end(), between);
    if (NMEAUtils::putNMEADate(date, text.data(), timestamp))
        body.append(text.data(), text.size());
    else
        body += kBetween;
}

} // namespace

bool interpretTrackPointSentence(std::string_view sentence, gps::GPSPoint& point,
                                 gps::Dictionary* extras)
{
    const auto fields = SentenceFields::ofSentence(sentence, kTrackPointSentence);
    if (fields)
        readTrackPoint(*fields, point, extras);
    return fields.has_value();
}

void readTrackPoint(const SentenceFields& fields, gps::GPSPoint& point, gps::Dictionary* extras)
{
    fields.require(kTimeOfDay + 1); // first, so that a short sentence leaves the outputs untouched
    readPosition(fields, point);
    if (fields.at(kAltitudeUnit) == "F")
        point.altitude /= kFeetPerMetre;
    if (extras != nullptr && fields.count() > kTrackName && !fields.at(kTrackName).empty())
        extras->setText("trackName", fields.at(kTrackName));
    const auto timeOfDay = fields.at(kTimeOfDay);
    point.time = fields.count() > kDate ? NMEAUtils::convertNMEADate(fields.at(kDate), timeOfDay)
                                        : NMEAUtils::updateNMEADate(point.time, timeOfDay);
}

std::optional<std::string> makeTrackPointSentenceWithPoint(const gps::GPSPoint& point)
{
    return appended([&](std::string& text) { return appendTrackPointSentence(text, point); });
}

bool appendTrackPointSentence(std::string& text, const gps::GPSPoint& point)
{
    return appendSentence(text, [&] {
        if (!appendPosition(text, kTrackPointSentence, point, kAltitudeWidth))
            return false;
        appendTimeAndDate(text, point.time);
        return true;
    });
}

} // namespace magellan
