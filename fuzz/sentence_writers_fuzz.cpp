// SPDX-License-Identifier: MIT
// Writes any texts and numbers as the sentences of a receiver's file. Each sentence is valid and is
// read as what was written, so that no text of a sender can damage a file.

#include "Bytes.h"
#include "FuzzTarget.h"

#include <gps/Geocache.h>
#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <plugin/codec/FieldText.h>
#include <plugin/codec/GeoCacheSentence.h>
#include <plugin/codec/RouteSentence.h>
#include <plugin/codec/TrackPointSentence.h>
#include <plugin/codec/WayPointSentence.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

gps::GPSPoint point(fuzz::Bytes& bytes)
{
    return {.latitude = bytes.number<double>(),
            .longitude = bytes.number<double>(),
            .altitude = bytes.number<double>(),
            .time = bytes.number<std::int64_t>()};
}

/// A record with a symbol that has an icon: an unknown one may be an icon's code, which is written
/// as it is.
gps::Dictionary record(fuzz::Bytes& bytes)
{
    gps::Dictionary record{{"symbol", "Flag"}};
    for (const auto key : gps::kGeocacheKeys)
        record.set(key, bytes.text());
    return record;
}

void requireValid(const std::string& sentence)
{
    fuzz::require(gps::NMEAUtils::checkAndTrimNMEASentence(sentence).has_value(),
                  "a written sentence is valid");
}

using Interpret = bool (*)(std::string_view, gps::GPSPoint&, gps::Dictionary*);

void checkRecord(const std::optional<std::string>& sentence, Interpret interpret,
                 const std::string& name)
{
    if (!sentence)
        return; // a sentence cannot express these coordinates
    requireValid(*sentence);
    gps::GPSPoint point;
    gps::Dictionary read;
    fuzz::require(interpret(*sentence, point, &read), "a written sentence can be read");
    fuzz::require(*read.findString("name") == name, "a name is read as it was written");
}

void checkRoute(fuzz::Bytes& bytes)
{
    gps::Array points;
    for (auto count = bytes.below(8); count > 0; --count)
        points.emplace_back(record(bytes));
    for (const auto& sentence : magellan::makeRouteSentencesFromWaypointList(points, record(bytes)))
        requireValid(sentence);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Bytes bytes{fuzz::textOf(data, size)};
    while (!bytes.isEmpty()) {
        const auto at = point(bytes);
        const auto texts = record(bytes);
        const auto name = magellan::magellanStringFromDictionary(texts, "name");
        checkRecord(magellan::makeWayPointSentenceWithPoint(at, texts),
                    magellan::interpretWayPointSentence, name.substr(0, magellan::kLongestName));
        checkRecord(magellan::makeGeoCacheSentenceWithPoint(at, texts),
                    magellan::interpretGeoCacheSentence, name);
        if (const auto sentence = magellan::makeTrackPointSentenceWithPoint(at))
            requireValid(*sentence);
        checkRoute(bytes);
    }
    return 0;
}
