// SPDX-License-Identifier: MIT
// Rows are kept until the end, since a table's columns are as wide as their longest text.

#include "host/cli/Summary.h"

#include "host/base/RecordText.h"
#include "host/base/Table.h"
#include "host/base/Text.h"
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

std::string timeText(const std::optional<std::int64_t>& time)
{
    std::string text;
    if (time)
        appendTimestamp(text, *time, ' ');
    return text;
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
    ++records_.back().points;
    length_.add(point);
}

void Summary::end()
{
    records_.back().kilometres = length_.kilometres();
}

std::optional<gps::Error> Summary::finish()
{
    using enum Table::Align;
    Table table{{{"Kind"},
                 {"Name"},
                 {"Points", kRight},
                 {"First (UTC)"},
                 {"Last (UTC)"},
                 {"Length km", kRight}}};
    const auto add = [&](const Row& row) {
        table.add({row.kind, row.name, std::to_string(row.points), timeText(row.first),
                   timeText(row.last), kilometreText(row.kilometres)});
    };
    if (rows_ == Rows::kCollections) {
        add(wayPoints_);
        add(geocaches_);
    }
    std::for_each(records_.begin(), records_.end(), add);
    add(total());
    output_.write(table.text());
    output_.write(jumpText());
    return output_.flush();
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
                                     timeText(point.time)));
}

Summary::Row Summary::total() const
{
    Row total{.kind = "Total", .points = wayPoints_.points + geocaches_.points, .kilometres = 0};
    for (const auto& row : records_) {
        total.points += isPoint(row) ? 0 : row.points; // they are counted above
        // A route is only planned: its length was not travelled.
        if (row.kind == kTrack)
            *total.kilometres += *row.kilometres;
        if (row.first)
            total.first = std::min(total.first.value_or(*row.first), *row.first);
        if (row.last)
            total.last = std::max(total.last.value_or(*row.last), *row.last);
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
