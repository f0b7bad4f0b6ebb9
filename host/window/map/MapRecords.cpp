// SPDX-License-Identifier: MIT
// One pass over all points.

#include "host/window/map/MapRecords.h"

#include "host/base/RecordText.h"
#include "host/base/Text.h"
#include "host/points/Points.h"
#include "host/window/base/Disposal.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {
namespace {

bool isBeyondMap(const gps::GPSPoint& point)
{
    return isOnGlobe(point) && std::abs(point.latitude) > kMostLatitude;
}

MapRecords::Path drawn(const KeptTrack& track)
{
    MapRecords::Path drawn;
    auto segment = track.segments.begin();
    for (std::size_t i = 0; i < track.points.size(); ++i) {
        if (segment != track.segments.end() && *segment == i) {
            drawn.path.breakHere();
            ++segment;
        }
        drawn.path.add(track.points[i]);
    }
    return drawn;
}

MapRecords::Path drawn(const KeptRoute& route)
{
    MapRecords::Path drawn;
    drawn.isRoute = true;
    for (const auto& point : route.points)
        drawn.path.add(point.point);
    return drawn;
}

MapRecords::Point drawn(const KeptPoint& point, std::size_t index)
{
    MapRecords::Point drawn{.position = mapPositionOf(point.point), .record = index};
    drawn.isGeocache = gps::isGeocache(point.record);
    drawn.isFound = drawn.isGeocache && !textIn(point.record, "dateFound").empty();
    if (!drawn.isGeocache)
        drawn.picture = findSymbolPicture(textIn(point.record, "symbol"));
    return drawn;
}

void addPath(MapRecords& shown, MapRecords::Path path, bool isBeyond)
{
    if (path.path.extent().isEmpty())
        ++shown.unseen;
    else if (isBeyond)
        ++shown.beyond;
    shown.paths.push_back(std::move(path));
}

void addPoint(MapRecords& shown, const KeptPoint& point, std::size_t index)
{
    if (!isOnGlobe(point.point)) {
        ++shown.unseen;
        return;
    }
    if (isBeyondMap(point.point))
        ++shown.beyond;
    shown.points.push_back(drawn(point, index));
}

Extent extentOfContents(const MapRecords& shown)
{
    std::vector<Extent> extents;
    for (const auto& path : shown.paths)
        extents.push_back(path.path.extent());
    for (const auto& point : shown.points) {
        extents.emplace_back();
        extents.back().include(point.position);
    }
    return extentOfAll(extents);
}

} // namespace

RecordRef MapRecords::pathRecord(std::size_t path) const
{
    const auto tracks = records->tracks.size();
    return path < tracks ? RecordRef{RecordKind::kTrack, path}
                         : RecordRef{RecordKind::kRoute, path - tracks};
}

Extent MapRecords::extentOf(const RecordRef& record) const
{
    switch (record.kind) {
    case RecordKind::kTrack:
        return paths[record.index].path.extent();
    case RecordKind::kRoute:
        return paths[records->tracks.size() + record.index].path.extent();
    case RecordKind::kPoint:
        break;
    }
    Extent found;
    const auto point =
        std::lower_bound(points.begin(), points.end(), record.index,
                         [](const Point& one, std::size_t index) { return one.record < index; });
    if (point != points.end() && point->record == record.index)
        found.include(point->position);
    return found;
}

std::shared_ptr<MapRecords> mapRecordsOf(std::shared_ptr<const RecordSet> records)
{
    auto shown = freedElsewhere(std::make_unique<MapRecords>());
    for (const auto& track : records->tracks)
        addPath(*shown, drawn(track),
                std::any_of(track.points.begin(), track.points.end(), isBeyondMap));
    for (const auto& route : records->routes)
        addPath(*shown, drawn(route),
                std::any_of(route.points.begin(), route.points.end(),
                            [](const KeptPoint& point) { return isBeyondMap(point.point); }));
    for (std::size_t i = 0; i < records->points.size(); ++i)
        addPoint(*shown, records->points[i], i);
    shown->extent = extentOfContents(*shown);
    shown->records = std::move(records);
    return shown;
}

std::string nameOnMap(const RecordSet& records, const RecordRef& record, std::size_t most)
{
    const auto name = [most](const gps::Dictionary& named) {
        return displayText(textIn(named, "name"), most);
    };
    switch (record.kind) {
    case RecordKind::kTrack:
        return name(records.tracks[record.index].record);
    case RecordKind::kRoute:
        return name(records.routes[record.index].record);
    case RecordKind::kPoint:
        break;
    }
    return name(records.points[record.index].record);
}

} // namespace host
