// SPDX-License-Identifier: MIT
// Rows are kept until the end, since a table's columns are as wide as their longest text.

#include "host/cli/Summary.h"

#include "host/base/Table.h"
#include "host/base/Text.h"
#include "host/points/Points.h"

#include <gps/Geocache.h>
#include <gps/NumberText.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace host {
namespace {

constexpr char kTrack[] = "Track";

// 0 if a point has no valid coordinates, so that it makes no jump.
double kilometresBetween(const gps::GPSPoint& a, const gps::GPSPoint& b)
{
    PathLength length;
    length.add(a);
    length.add(b);
    return length.kilometres();
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
    begin(kTrack, track);
}

void Summary::trackPoint(const gps::GPSPoint& point)
{
    add(point);
    noteJump(point);
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
    lastFix_.reset();
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
    output_.write(jumpText());
    return output_.flush();
}

// Times are whole seconds, so two points of the same second may be almost a second apart.
void Summary::noteJump(const gps::GPSPoint& point)
{
    // A point without a time ends the comparison, because nobody knows how long the way to it took.
    const auto before = std::exchange(lastFix_, std::nullopt);
    if (!hasTimestamp(point))
        return;
    lastFix_ = point;
    if (!before)
        return;
    const auto seconds = std::max<std::int64_t>(std::abs(point.time - before->time), 1);
    const auto kilometres = kilometresBetween(*before, point);
    if (kilometres * 1000 <= kMostMetresPerSecond * static_cast<double>(seconds))
        return;
    if (jumps_.size() == kMostJumps)
        ++moreJumps_;
    else
        jumps_.push_back(fmt::format("Track \"{}\" jumps {} km in {} s, up to {}. No receiver can "
                                     "record that; one of the two points is wrong.",
                                     displayText(collections_.back().name),
                                     kilometreText(kilometres), seconds, timeText(point.time)));
}

Summary::Row Summary::total() const
{
    Row total{.kind = "Total", .points = wayPoints_.points + geocaches_.points, .kilometres = 0};
    for (const auto& row : collections_) {
        total.points += row.points;
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
