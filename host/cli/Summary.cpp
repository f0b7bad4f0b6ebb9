// SPDX-License-Identifier: MIT
// Rows are kept until the end, since a table's columns are as wide as their longest text.

#include "host/cli/Summary.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/places/PlaceTime.h"
#include "host/places/Places.h"
#include "host/points/Points.h"
#include "host/points/TrackGap.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace host {
namespace {

constexpr char kTrack[] = "Track";
constexpr char kWaypointRow[] = "Waypoint";
constexpr char kGeocacheRow[] = "Geocache";

bool isPoint(const SummaryRow& row)
{
    return row.kind == kWaypointRow || row.kind == kGeocacheRow;
}

// Two zones if a journey led from one into another.
std::string zoneText(const SummaryRow& row)
{
    if (!row.first)
        return {};
    const auto first = zoneTitle(row.firstZone, *row.first);
    const auto last = zoneTitle(row.lastZone, *row.last);
    return first == last ? first : first + ", " + last;
}

std::string kilometreText(const std::optional<double>& kilometres)
{
    std::string text;
    if (kilometres)
        gps::appendFixed(text, *kilometres, 2);
    return text;
}

} // namespace

void Summary::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& record)
{
    const bool isGeocache = gps::isGeocache(record);
    ++(isGeocache ? geocaches_ : wayPoints_).points;
    if (rows_ == Rows::kAll)
        addRecord(isGeocache ? kGeocacheRow : kWaypointRow, point, record);
}

void Summary::addRecord(std::string kind, const gps::GPSPoint& point, const gps::Dictionary& record)
{
    Row row{.kind = std::move(kind), .name = std::string{textIn(record, "name")}, .points = 1};
    if (hasTimestamp(point))
        row.first = row.last = point.time;
    locate(row, point);
    records_.push_back(std::move(row));
}

void Summary::beginRoute(const gps::Dictionary& route)
{
    begin("Route", route);
}

void Summary::routePoint(const gps::GPSPoint& point, const gps::Dictionary&)
{
    add(point);
}

void Summary::endRoute()
{
    end();
}

void Summary::beginTrack(const gps::Dictionary& track)
{
    begin(kTrack, track);
}

void Summary::trackPoint(const gps::GPSPoint& point)
{
    add(point);
    noteJump(point);
    if (!hasTimestamp(point))
        return;
    auto& row = records_.back();
    row.first = std::min(row.first.value_or(point.time), point.time);
    row.last = std::max(row.last.value_or(point.time), point.time);
}

void Summary::newSegment()
{
    length_.breakHere();
}

void Summary::endTrack()
{
    end();
}

void Summary::begin(std::string kind, const gps::Dictionary& collection)
{
    length_ = {};
    lastFix_.reset();
    records_.push_back({.kind = std::move(kind), .name = std::string{textIn(collection, "name")}});
}

void Summary::add(const gps::GPSPoint& point)
{
    auto& row = records_.back();
    ++row.points;
    locate(row, point);
    length_.add(point);
}

void Summary::locate(Row& row, const gps::GPSPoint& point) const
{
    if (row.isLocated || !isOnGlobe(point))
        return;
    row.isLocated = true;
    row.where = whereabouts(point);
    if (clock_ == Clock::kLocal)
        row.firstZone = row.lastZone = timeZoneAt(point);
}

void Summary::end()
{
    records_.back().kilometres = length_.kilometres();
}

std::optional<gps::Error> Summary::finish()
{
    auto table = emptyTable();
    if (rows_ == Rows::kCollections) {
        table.add(textsOf(wayPoints_));
        table.add(textsOf(geocaches_));
    }
    for (const auto& row : records_)
        table.add(textsOf(row));
    table.add(textsOf(total()));
    output_.write(table.text());
    output_.write(jumpText());
    return output_.flush();
}

Table Summary::emptyTable() const
{
    using enum Table::Align;
    std::vector<Table::Column> columns{{"Kind"}, {"Name"}, {"Points", kRight}};
    if (clock_ == Clock::kUtc)
        columns.insert(columns.end(), {{"First (UTC)"}, {"Last (UTC)"}});
    else
        columns.insert(columns.end(), {{"First"}, {"Last"}, {"Time zone"}});
    columns.insert(columns.end(), {{"Length km", kRight}, {"Where"}});
    return Table{std::move(columns)};
}

std::vector<std::string> Summary::textsOf(const Row& row) const
{
    std::vector<std::string> texts{row.kind, row.name, std::to_string(row.points),
                                   timeInZone(row.first, row.firstZone),
                                   timeInZone(row.last, row.lastZone)};
    if (clock_ == Clock::kLocal)
        texts.push_back(zoneText(row));
    texts.insert(texts.end(), {kilometreText(row.kilometres), row.where});
    return texts;
}

void Summary::noteJump(const gps::GPSPoint& point)
{
    const auto before = std::exchange(lastFix_, point);
    if (!before || !isImpossibleJump(*before, point))
        return;
    const auto seconds = std::max<std::int64_t>(std::abs(point.time - before->time), 1);
    if (jumps_.size() == kMostJumps)
        ++moreJumps_;
    else
        jumps_.push_back(fmt::format("Track \"{}\" jumps {} km in {} s, up to {}. No receiver can "
                                     "record that; one of the two points is wrong.",
                                     displayText(records_.back().name),
                                     kilometreText(kilometresBetween(*before, point)), seconds,
                                     timeInZone(point.time, records_.back().firstZone)));
}

Summary::Row Summary::total() const
{
    Row total{.kind = "Total", .points = wayPoints_.points + geocaches_.points, .kilometres = 0};
    for (const auto& row : records_) {
        total.points += isPoint(row) ? 0 : row.points; // they are counted above
        // A route is only planned: its length was not travelled.
        if (row.kind == kTrack)
            *total.kilometres += *row.kilometres;
        if (row.first && (!total.first || *row.first < *total.first)) {
            total.first = row.first;
            total.firstZone = row.firstZone;
        }
        if (row.last && (!total.last || *row.last > *total.last)) {
            total.last = row.last;
            total.lastZone = row.lastZone;
        }
    }
    return total;
}

std::string Summary::jumpText() const
{
    std::string text;
    for (const auto& jump : jumps_)
        text.append(text.empty() ? "\n" : "").append(jump).append("\n");
    if (moreJumps_ > 0)
        text +=
            fmt::format("And {} more such {}.\n", moreJumps_, moreJumps_ == 1 ? "jump" : "jumps");
    return text;
}

} // namespace host
