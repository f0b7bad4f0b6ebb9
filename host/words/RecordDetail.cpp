// SPDX-License-Identifier: MIT
// Texts of records come from files and receivers, so all of them are made safe here.

#include "host/words/RecordDetail.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/places/PlaceTime.h"
#include "host/places/Places.h"
#include "host/points/Points.h"
#include "host/points/TrackFigures.h"

#include <cstddef>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kMostOfRecordName = 60; // characters, so that the details keep their place
constexpr std::size_t kMostOfSymbol = 40;
constexpr std::size_t kMostOfText = 2000;
constexpr std::string_view kPartSeparator = " · ";

/// Collects lines; empty values are left out.
class Lines {
public:
    void add(const char* label, std::string value)
    {
        if (!value.empty())
            lines_.push_back({label, std::move(value)});
    }

    // Line breaks of a comment are layout.
    void addText(const char* label, const gps::Dictionary& record, std::string_view key)
    {
        add(label, displayText(pageText(textIn(record, key)), kMostOfText));
    }

    [[nodiscard]] std::vector<DetailLine> take() { return std::move(lines_); }

private:
    std::vector<DetailLine> lines_;
};

std::string pointCount(std::size_t points)
{
    return trCounted(points, "{} point", "{} points", numberText(static_cast<double>(points), 0));
}

// Without the seconds.
std::string minuteText(std::int64_t time, std::string_view zone)
{
    constexpr std::size_t kUpToMinutes = 16; // characters of "2008-08-11 08:15:48"
    return timeInZone(time, zone).substr(0, kUpToMinutes);
}

double secondsOf(const RecordRow& row)
{
    return static_cast<double>(*row.last - *row.first);
}

const gps::Dictionary& recordOf(const RecordSet& records, const RecordRow& row)
{
    switch (row.kind) {
    case RecordKind::kTrack:
        return records.tracks[row.index].record;
    case RecordKind::kRoute:
        return records.routes[row.index].record;
    case RecordKind::kPoint:
        break;
    }
    return records.points[row.index].record;
}

void addParts(std::vector<std::string>& parts, const RecordRow& row,
              const Presentation& presentation)
{
    if (row.metres)
        parts.push_back(lengthText(*row.metres, presentation.units));
    if (row.first && *row.last > *row.first)
        parts.push_back(durationText(secondsOf(row)));
    if (row.ascent)
        parts.push_back(trFormat("{} up", heightText(*row.ascent, presentation.units)));
    if (row.kind != RecordKind::kPoint && !row.first)
        parts.push_back(pointCount(row.points));
}

void addPoint(Lines& lines, const RecordSet& records, const RecordRow& row,
              const Presentation& presentation)
{
    const auto& [point, record] = records.points[row.index];
    lines.addText(tr("Symbol"), record, "symbol");
    if (hasElevation(point) && point.altitude != 0)
        lines.add(tr("Elevation"), heightText(point.altitude, presentation.units));
    if (row.first)
        lines.add(tr("Time"), timeText(*row.first, shownZone(row.position, presentation)));
    lines.addText(tr("Type"), record, "geocacheType");
    lines.addText(tr("Difficulty"), record, "difficulty");
    lines.addText(tr("Terrain"), record, "terrain");
    lines.addText(tr("Owner"), record, "geocacheOwner");
    lines.addText(tr("Hint"), record, "geocacheHint");
    lines.addText(tr("Placed"), record, "datePlaced");
    lines.addText(tr("Found"), record, "dateFound");
}

void addTrack(Lines& lines, const RecordRow& row, const Presentation& presentation)
{
    const auto zone = shownZone(row.position, presentation);
    if (row.first) {
        lines.add(tr("Start"), timeText(*row.first, zone));
        lines.add(tr("End"), timeText(*row.last, zone));
        lines.add(tr("Duration"), durationText(secondsOf(row)));
    }
    if (row.ascent)
        lines.add(tr("Ascent"), heightText(*row.ascent, presentation.units));
    if (row.descent)
        lines.add(tr("Descent"), heightText(*row.descent, presentation.units));
}

} // namespace

std::string rowName(const RecordRow& row)
{
    auto name = displayText(row.name, kMostOfRecordName);
    return name.empty() ? unnamedText(row.kind, row.isGeocache) : name;
}

std::string unnamedText(RecordKind kind, bool isGeocache)
{
    switch (kind) {
    case RecordKind::kTrack:
        return tr("Track without a name");
    case RecordKind::kRoute:
        return tr("Route without a name");
    case RecordKind::kPoint:
        break;
    }
    return isGeocache ? tr("Geocache without a name") : tr("Waypoint without a name");
}

std::string_view kindName(const RecordRow& row)
{
    switch (row.kind) {
    case RecordKind::kTrack:
        return tr("Track");
    case RecordKind::kRoute:
        return tr("Route");
    case RecordKind::kPoint:
        break;
    }
    return row.isGeocache ? tr("Geocache") : tr("Waypoint");
}

std::string rowDetail(const RecordSet& records, const RecordRow& row,
                      const Presentation& presentation)
{
    std::vector<std::string> parts;
    if (row.kind != RecordKind::kTrack) // whose figures nothing else has
        parts.emplace_back(kindName(row));
    if (row.first)
        parts.push_back(minuteText(*row.first, shownZone(row.position, presentation)));
    addParts(parts, row, presentation);
    const auto& record = recordOf(records, row);
    const auto* const key = row.isGeocache ? "geocacheType" : "symbol";
    if (const auto text = displayText(textIn(record, key), kMostOfSymbol); !text.empty())
        parts.push_back(text);
    return joined(parts, kPartSeparator);
}

std::vector<DetailLine> recordDetails(const RecordSet& records, const RecordRow& row,
                                      const Presentation& presentation)
{
    Lines lines;
    const auto& record = recordOf(records, row);
    lines.addText(tr("Name"), record, "name");
    lines.add(tr("Kind"), std::string{kindName(row)});
    lines.addText(tr("Comment"), record, "comment");
    if (row.position) {
        lines.add(tr("Location"), whereabouts(*row.position, tr));
        lines.add(row.kind == RecordKind::kPoint ? tr("Coordinates") : tr("Starts at"),
                  coordinateText(row.position->latitude, row.position->longitude));
    }
    if (row.metres)
        lines.add(tr("Length"), lengthText(*row.metres, presentation.units));
    if (row.kind == RecordKind::kPoint)
        addPoint(lines, records, row, presentation);
    else
        addTrack(lines, row, presentation);
    if (row.kind != RecordKind::kPoint)
        lines.add(tr("Points"), numberText(static_cast<double>(row.points), 0));
    return lines.take();
}

std::string_view shownZone(const std::optional<gps::GPSPoint>& position,
                           const Presentation& presentation)
{
    return presentation.isUtc || !position ? std::string_view{} : timeZoneAt(*position);
}

std::string timeText(std::int64_t time, std::string_view zone)
{
    const auto title = zoneTitle(zone, time);
    const auto shown = timeInZone(time, zone);
    return title == "UTC" ? shown + " UTC" : trFormat("{} {} time", shown, title);
}

} // namespace host
