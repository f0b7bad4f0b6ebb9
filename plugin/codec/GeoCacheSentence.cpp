// SPDX-License-Identifier: MIT
// Geocaches: a position followed by nine texts, all of them required on reading.

#include "GeoCacheSentence.h"

#include "../common/Lines.h"
#include "FieldText.h"
#include "PositionFields.h"
#include "SentenceFields.h"
#include "SentenceList.h"
#include "SentenceText.h"

#include <gps/Geocache.h>

namespace magellan {
namespace {

// Field indices:
//   0       1        2 3         4 5       6 7    8       9     10   11   12     13    14
//   PMGNGEO,4605.979,N,00713.315,E,0001529,M,NAME,COMMENT,OWNER,HINT,TYPE,PLACED,FOUND,DIFFICULTY,
//   15
//   TERRAIN
enum Field : std::size_t {
    kAltitudeUnit = kPositionFields,
    kName,
    kComment,
    kOwner,
    kHint,
    kType,
    kDatePlaced,
    kDateFound,
    kDifficulty,
    kTerrain,
    kFieldCount,
};

constexpr int kAltitudeWidth = 7;

bool appendGeoCacheSentence(std::string& text, const gps::GPSPoint& point,
                            const gps::Dictionary& record)
{
    return appendSentence(text, [&] {
        if (!appendPosition(text, kGeoCacheSentence, point, kAltitudeWidth))
            return false;
        // A type given as "Geocache|Multi" is written as "GeocacheMulti": the filter removes the
        // "|", so the prefix is kept.
        for (const auto key : gps::kGeocacheKeys) {
            appendDeviceText(text, record, key);
            text += ',';
        }
        text.pop_back();
        return true;
    });
}

constexpr SentenceListKind kGeoCacheList{"geocache", appendGeoCacheSentence,
                                         MissingPoint::kRejectList};

// The keys are those of the text fields, from kName to kTerrain.
static_assert(gps::kGeocacheKeys.size() == kFieldCount - kName);

/// Validates the field count up front, so that a truncated sentence leaves the caller's point and
/// record untouched. The error names the first missing field; if the sentence ends after the
/// altitude, it names the placed date.
void requireTexts(const SentenceFields& fields)
{
    if (fields.count() == kAltitudeUnit)
        fields.throwRangeError(kDatePlaced);
    fields.require(kFieldCount);
}

} // namespace

bool interpretGeoCacheSentence(std::string_view sentence, gps::GPSPoint& point,
                               gps::Dictionary* record)
{
    const auto fields = SentenceFields::ofSentence(sentence, kGeoCacheSentence);
    if (fields)
        readGeoCache(*fields, point, record);
    return fields.has_value();
}

void readGeoCache(const SentenceFields& fields, gps::GPSPoint& point, gps::Dictionary* record)
{
    if (record != nullptr)
        requireTexts(fields);
    readPosition(fields, point);
    point.time = 0;
    if (record == nullptr)
        return;
    for (std::size_t i = 0; i < gps::kGeocacheKeys.size(); ++i)
        setInDictionary(*record, gps::kGeocacheKeys[i], kName + i, fields);
    record->setText("symbol", fields.at(kDatePlaced).empty() ? gps::kGeocacheSymbol
                                                             : gps::kFoundGeocacheSymbol);
}

std::optional<std::string_view> geoCacheName(const SentenceFields& fields)
{
    requireTexts(fields);
    return fields.at(kName);
}

bool isGeoCacheAsWritten(const SentenceFields& fields)
{
    if (fields.count() != kFieldCount || !isPositionAsWritten(fields, kAltitudeWidth))
        return false;
    for (std::size_t text = kName; text < kFieldCount; ++text) {
        if (!deviceCharacterSet().containsAll(fields.at(text)))
            return false;
    }
    return true;
}

std::optional<std::string> makeGeoCacheSentenceWithPoint(const gps::GPSPoint& point,
                                                         const gps::Dictionary& record)
{
    return appended([&](std::string& text) { return appendGeoCacheSentence(text, point, record); });
}

std::optional<std::vector<std::string>>
makeGeocacheSentencesFromGeocacheList(const gps::Array& list)
{
    return makeSentences(list, kGeoCacheList);
}

bool appendGeoCacheLine(const gps::Value& element, std::string& text)
{
    return appendSentenceOf(element, kGeoCacheList, kFileLineEnd, text);
}

} // namespace magellan
