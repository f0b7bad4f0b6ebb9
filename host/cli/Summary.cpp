// SPDX-License-Identifier: MIT
// Rows are kept until the end, since a table's columns are as wide as their longest text.

#include "host/cli/Summary.h"

#include "host/base/Table.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <algorithm>
#include <utility>

namespace host {
namespace {

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

void Summary::wayPoint(const gps::GPSPoint&, const gps::Dictionary& record)
{
    ++(gps::isGeocache(record) ? geocaches_ : wayPoints_).points;
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
    begin("Track", track);
}

void Summary::trackPoint(const gps::GPSPoint& point)
{
    add(point);
    if (!hasTimestamp(point))
        return;
    auto& row = collections_.back();
    row.first = std::min(row.first.value_or(point.time), point.time);
    row.last = std::max(row.last.value_or(point.time), point.time);
}

void Summary::endTrack()
{
    end();
}

void Summary::begin(std::string kind, const gps::Dictionary& collection)
{
    const auto* name = collection.findString("name");
    length_ = {};
    collections_.push_back(
        {.kind = std::move(kind), .name = name != nullptr ? *name : std::string{}});
}

void Summary::add(const gps::GPSPoint& point)
{
    ++collections_.back().points;
    length_.add(point);
}

void Summary::end()
{
    collections_.back().kilometres = length_.kilometres();
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
    add(wayPoints_);
    add(geocaches_);
    std::for_each(collections_.begin(), collections_.end(), add);
    add(total());
    output_.write(table.text());
    return output_.flush();
}

Summary::Row Summary::total() const
{
    Row total{.kind = "Total", .points = wayPoints_.points + geocaches_.points, .kilometres = 0};
    for (const auto& row : collections_) {
        total.points += row.points;
        *total.kilometres += *row.kilometres;
        if (row.first)
            total.first = std::min(total.first.value_or(*row.first), *row.first);
        if (row.last)
            total.last = std::max(total.last.value_or(*row.last), *row.last);
    }
    return total;
}

} // namespace host
