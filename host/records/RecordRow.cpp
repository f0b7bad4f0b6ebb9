// SPDX-License-Identifier: MIT
// Unicode's own case folding and decomposition make the search keys; texts in ASCII, which most
// are, skip both.

#include "host/records/RecordRow.h"

#include "host/base/RecordText.h"
#include "host/points/Points.h"
#include "host/points/TrackFigures.h"

#include <gps/Geocache.h>

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <initializer_list>

namespace host {
namespace {

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string asciiKey(std::string_view text)
{
    std::string key{text};
    std::transform(key.begin(), key.end(), key.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return key;
}

icu::UnicodeString decomposed(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto* const folding = icu::Normalizer2::getNFKCCasefoldInstance(status);
    const auto* const decomposition = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeString wide =
        icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    if (U_FAILURE(status) != 0)
        return wide;
    const auto folded = folding->normalize(wide, status);
    auto result = decomposition->normalize(folded, status);
    return U_FAILURE(status) != 0 ? wide : result;
}

void addSearched(RecordRow& row, const gps::Dictionary& record,
                 std::initializer_list<std::string_view> keys)
{
    std::string text;
    for (const auto key : keys) {
        if (const auto value = textIn(record, key); !value.empty())
            text.append(value).append("\n");
    }
    row.searched += searchKey(text);
}

RecordRow rowOf(const KeptTrack& track, std::size_t index)
{
    RecordRow row{.kind = RecordKind::kTrack, .index = index, .points = track.points.size()};
    TrackFigures figures;
    auto segment = track.segments.begin();
    for (std::size_t i = 0; i < track.points.size(); ++i) {
        if (segment != track.segments.end() && *segment == i) {
            figures.breakHere();
            ++segment;
        }
        figures.add(track.points[i]);
    }
    row.metres = figures.kilometres() * 1000;
    row.first = figures.first();
    row.last = figures.last();
    row.ascent = figures.ascentMetres();
    row.descent = figures.descentMetres();
    const auto first = std::find_if(track.points.begin(), track.points.end(), isOnGlobe);
    if (first != track.points.end())
        row.position = *first;
    addSearched(row, track.record, {"name", "comment"});
    return row;
}

RecordRow rowOf(const KeptRoute& route, std::size_t index)
{
    RecordRow row{.kind = RecordKind::kRoute, .index = index, .points = route.points.size()};
    PathLength length;
    for (const auto& point : route.points) {
        length.add(point.point);
        if (!row.position && isOnGlobe(point.point))
            row.position = point.point;
    }
    row.metres = length.kilometres() * 1000;
    addSearched(row, route.record, {"name", "comment"});
    for (const auto& point : route.points)
        addSearched(row, point.record, {"name"});
    return row;
}

RecordRow rowOf(const KeptPoint& point, std::size_t index)
{
    RecordRow row{.index = index, .isGeocache = gps::isGeocache(point.record)};
    if (isOnGlobe(point.point))
        row.position = point.point;
    if (hasTimestamp(point.point))
        row.first = row.last = point.point.time;
    addSearched(row, point.record,
                {"name", "symbol", "comment", "geocacheOwner", "geocacheHint", "geocacheType"});
    return row;
}

template <typename Record>
void addRows(const std::vector<Record>& records, std::vector<RecordRow>& rows)
{
    for (std::size_t i = 0; i < records.size(); ++i) {
        rows.push_back(rowOf(records[i], i));
        rows.back().name = textIn(records[i].record, "name");
    }
}

} // namespace

std::vector<RecordRow> recordRows(const RecordSet& records)
{
    std::vector<RecordRow> rows;
    rows.reserve(records.tracks.size() + records.routes.size() + records.points.size());
    addRows(records.tracks, rows);
    addRows(records.routes, rows);
    addRows(records.points, rows);
    return rows;
}

std::string searchKey(std::string_view text)
{
    if (isAscii(text))
        return asciiKey(text);
    const auto wide = decomposed(text);
    icu::UnicodeString plain;
    for (std::int32_t i = 0; i < wide.length(); i = wide.moveIndex32(i, 1)) {
        if (u_charType(wide.char32At(i)) != U_NON_SPACING_MARK)
            plain.append(wide.char32At(i));
    }
    std::string key;
    plain.toUTF8String(key);
    return key;
}

} // namespace host
