// SPDX-License-Identifier: MIT
// The order of the calls is that of a reader: records before their points.

#include "DeviceFile.h"

#include <gps/GPSTransferAccount.h>
#include <plugin/fsdevice/DeviceFileReaders.h>

#include <utility>

namespace fuzz {
namespace {

/// The "points" of the last announced record.
gps::Array& pointsOfLast(gps::Array& records)
{
    require(!records.empty(), "a record is announced before its points");
    auto* points = records.back().as<gps::Dictionary>()->find("points");
    return *points->as<gps::Array>();
}

void announce(gps::Array& records, gps::Dictionary record)
{
    require(record.findString("name") != nullptr, "an announced record has a name");
    record.set("points", gps::Array{});
    records.emplace_back(std::move(record));
}

} // namespace

void Records::newTrack(const gps::Dictionary& track)
{
    require(tracks.empty() || !pointsOfLast(tracks).empty(),
            "no track is announced without a point");
    announce(tracks, track);
}

void Records::trackPoint(const gps::GPSPoint& point, const gps::Dictionary& extra)
{
    const auto* name = extra.findString("trackName");
    auto& points = pointsOfLast(tracks);
    require(name == nullptr || *name == *tracks.back().as<gps::Dictionary>()->findString("name"),
            "a point belongs to the track announced last");
    points.emplace_back(point);
}

void Records::newRoute(const gps::Dictionary& route)
{
    announce(routes, route);
}

void Records::wayPoint(const gps::GPSPoint& point, const gps::Dictionary& extra)
{
    gps::Dictionary record = extra;
    require(record.findString("name") != nullptr, "a waypoint has a name");
    require(routes.empty() == (gps::findPoint(record) == nullptr),
            "only a point of a route has its coordinates in the record");
    record.set(gps::kPointKey, point);
    (routes.empty() ? waypoints : pointsOfLast(routes)).emplace_back(std::move(record));
}

std::string joinedLines(const std::vector<std::string>& lines)
{
    std::string text;
    for (const auto& line : lines)
        text += line + "\r\n";
    return text;
}

Records recordsIn(magellan::RecordKind kind, std::string_view text)
{
    Records records;
    gps::LineAccount lines;
    magellan::reportRecords(kind, records, text, lines);
    return records;
}

} // namespace fuzz
