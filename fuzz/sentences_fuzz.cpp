// SPDX-License-Identifier: MIT
// Passes one line to each sentence interpreter. A line that is too short changes nothing; the
// record of an accepted line can be written, read and written again as the same text. Each input is
// tried unchanged and with its checksum corrected, and as the body of a sentence.

#include "Framing.h"
#include "FuzzTarget.h"

#include <gps/Error.h>
#include <gps/Value.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <plugin/codec/GeoCacheSentence.h>
#include <plugin/codec/RouteSentence.h>
#include <plugin/codec/SentenceFields.h>
#include <plugin/codec/TrackPointSentence.h>
#include <plugin/codec/WayPointSentence.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr gps::GPSPoint kBefore{
    .latitude = 1, .longitude = 2, .altitude = 3, .time = 951782400, .reserved = 5};

struct PointRecord {
    gps::GPSPoint point = kBefore;
    gps::Dictionary record;
};

/// Reads a line whose failure must change nothing.
template <typename Interpret>
std::optional<PointRecord> interpreted(std::string_view line, Interpret interpret)
{
    PointRecord result;
    bool accepted = false;
    try {
        accepted = interpret(line, result.point, &result.record);
    } catch (const gps::RangeError&) {
    }
    fuzz::require(result.point.reserved == kBefore.reserved, "the reserved field is never touched");
    if (accepted)
        return result;
    fuzz::require(result.point == kBefore && result.record.empty(),
                  "a rejected line changes nothing");
    return std::nullopt;
}

/// Compares the name that a kind finds in a line's fields with the one that a reading stores.
template <typename Interpret, typename NameIn>
void checkName(std::string_view line, std::string_view kind, Interpret interpret, NameIn nameIn)
{
    std::optional<std::string_view> name;
    try {
        if (const auto fields = magellan::SentenceFields::ofSentence(line, kind))
            name = nameIn(*fields);
    } catch (const gps::RangeError&) {
    }
    const auto read = interpreted(line, interpret);
    const auto* readName = read ? read->record.findString("name") : nullptr;
    fuzz::require(name.has_value() == (readName != nullptr) && (!name || *name == *readName),
                  "the shortcut finds the same name as reading the line");
}

template <typename Interpret, typename Make>
void checkPointSentence(std::string_view line, Interpret interpret, Make make)
{
    const auto first = interpreted(line, interpret);
    if (!first)
        return;
    const std::optional<std::string> text = make(*first);
    if (!text)
        return; // a sentence cannot express these coordinates
    const auto second = interpreted(*text, interpret);
    fuzz::require(second.has_value(), "a written sentence is accepted");
    fuzz::require(make(*second) == text,
                  "a written sentence, read and written again, is unchanged");
}

gps::Dictionary knownWayPoints()
{
    gps::Dictionary known;
    for (const auto* name : {"Camp", "Lake", "Top", "Spitzhorn"})
        known.set(name, gps::Dictionary{{"name", name},
                                        {"comment", ""},
                                        {"symbol", "ah"},
                                        {gps::kPointKey, gps::GPSPoint{}}});
    return known;
}

void checkRouteSentence(std::string_view line)
{
    static const auto known = knownWayPoints();
    gps::Array points;
    gps::Dictionary info;
    try {
        (void)magellan::interpretRouteSentence(line, points, known, info);
    } catch (const gps::RangeError&) {
        fuzz::require(points.empty() && info.empty(), "a line that is too short adds nothing");
        return;
    }
    const auto text = magellan::makeRouteSentencesFromWaypointList(points, info);
    gps::Array again;
    gps::Dictionary infoAgain;
    bool ended = text.empty();
    for (const auto& sentence : text)
        ended = magellan::interpretRouteSentence(sentence, again, known, infoAgain);
    fuzz::require(ended && again == points,
                  "a written route ends with its last sentence and has its points");
    if (!text.empty())
        fuzz::require(magellan::makeRouteSentencesFromWaypointList(again, infoAgain) == text,
                      "a written sentence, read and written again, is unchanged");
}

template <typename Predicate, typename Rewrite> void
checkAsWritten(std::string_view line, std::string_view name, Predicate isAsWritten, Rewrite rewrite)
{
    const auto fields = magellan::SentenceFields::ofSentence(line, name);
    if (!fields || !isAsWritten(*fields))
        return;
    const auto written = rewrite(*fields);
    fuzz::require(written.has_value() &&
                      magellan::SentenceFields::ofSentence(*written, name)->from(0) ==
                          fields->from(0),
                  "a sentence that is as it would be written is written like that");
}

void checkLine(std::string_view line)
{
    checkPointSentence(line, magellan::interpretTrackPointSentence, [](const PointRecord& r) {
        return magellan::makeTrackPointSentenceWithPoint(r.point);
    });
    checkPointSentence(line, magellan::interpretWayPointSentence, [](const PointRecord& r) {
        return magellan::makeWayPointSentenceWithPoint(r.point, r.record);
    });
    checkPointSentence(line, magellan::interpretGeoCacheSentence, [](const PointRecord& r) {
        return magellan::makeGeoCacheSentenceWithPoint(r.point, r.record);
    });
    checkName(line, magellan::kWayPointSentence, magellan::interpretWayPointSentence,
              magellan::wayPointName);
    checkName(line, magellan::kGeoCacheSentence, magellan::interpretGeoCacheSentence,
              magellan::geoCacheName);
    checkAsWritten(line, magellan::kWayPointSentence, magellan::isWayPointAsWritten,
                   [](const magellan::SentenceFields& fields) {
                       PointRecord r;
                       magellan::readWayPoint(fields, r.point, &r.record);
                       return magellan::makeWayPointSentenceWithPoint(r.point, r.record);
                   });
    checkAsWritten(line, magellan::kGeoCacheSentence, magellan::isGeoCacheAsWritten,
                   [](const magellan::SentenceFields& fields) {
                       PointRecord r;
                       magellan::readGeoCache(fields, r.point, &r.record);
                       return magellan::makeGeoCacheSentenceWithPoint(r.point, r.record);
                   });
    checkRouteSentence(line);
}

/// The check looks at eight bytes at a time; here it is done byte by byte.
void checkChecksum(std::string_view body)
{
    std::uint8_t checksum = 0;
    bool isAllowed = !body.empty();
    for (const char c : body) {
        checksum ^= static_cast<std::uint8_t>(c);
        isAllowed = isAllowed && c >= ' ' && c <= '~' && c != '$' && c != '*';
    }
    fuzz::require(gps::NMEAUtils::checksumFromSentence(body) == checksum,
                  "the checksum is the exclusive or of all bytes");
    const auto sentence = gps::NMEAUtils::addChecksumToNMEASentence(body);
    fuzz::require(gps::NMEAUtils::checkAndTrimNMEASentence(sentence).has_value() == isAllowed,
                  "a sentence is accepted if all its bytes are allowed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto line = fuzz::textOf(data, size);
    checkLine(line);
    checkLine(fuzz::withChecksum(line));
    checkChecksum(line);
    return 0;
}
