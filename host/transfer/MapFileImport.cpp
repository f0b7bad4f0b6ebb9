// SPDX-License-Identifier: MIT
// Hands over the records as they are read for a send, without the keys that only a send uses.

#include "host/transfer/MapFileImport.h"

#include "host/base/Text.h"
#include "host/fitting/RecordList.h"
#include "host/fitting/TrackSegments.h"
#include "host/formats/KmlReader.h"

#include <gps/Value.h>

#include <initializer_list>
#include <string_view>

namespace host {
namespace {

using gps::TransferKind;

constexpr char kPoints[] = "points";

gps::Dictionary without(std::initializer_list<std::string_view> keys, const gps::Dictionary& record)
{
    gps::Dictionary rest;
    for (const auto& [key, value] : record) {
        if (!isOneOf(key, keys))
            rest.set(key, value);
    }
    return rest;
}

gps::GPSPoint pointIn(const gps::Dictionary& record)
{
    const auto* const point = gps::findPoint(record);
    return point != nullptr ? *point : gps::GPSPoint{};
}

void reportWaypoint(const gps::Dictionary& record, gps::GPSOutputReceiver& status)
{
    status.wayPoint(pointIn(record), without({gps::kPointKey}, record));
}

void reportRoute(const gps::Dictionary& record, gps::GPSOutputReceiver& status)
{
    status.newRoute(without({kPoints, "number"}, record));
    forEachRecord(record, kPoints,
                  [&](const gps::Dictionary& point) { reportWaypoint(point, status); });
}

void reportTrack(const gps::Dictionary& record, EventStream& status)
{
    const auto* const number = record.find(kSegmentKey);
    if (number != nullptr && number->int32Reading() > 1)
        status.newSegment();
    else
        status.newTrack(without({kPoints, kSegmentKey}, record));
    forEachRecord(record, kPoints,
                  [&](const gps::Dictionary& point) { status.trackPoint(pointIn(point), {}); });
}

template <typename Report> void reportKind(TransferKind kind, const gps::Dictionary& data,
                                           const char* key, EventStream& status, Report report)
{
    if (!data.contains(key))
        return;
    status.startTransfer(kind);
    forEachRecord(data, key, [&](const gps::Dictionary& record) { report(record, status); });
    status.endTransfer(kind);
}

} // namespace

bool isMapFile(const std::string& file)
{
    return isOneOf(fileTypeOf(file), kMapFileTypes);
}

std::optional<gps::Error> importMapFile(const std::string& file, EventStream& status,
                                        UnreadParts& unread, const ReadProgress& progress)
{
    gps::Dictionary data;
    if (auto failure = fileTypeOf(file) == "gpx" ? readGpx(file, data, &unread, progress)
                                                 : readKml(file, data, unread))
        return failure;
    reportRecords(data, status);
    return std::nullopt;
}

void reportRecords(const gps::Dictionary& data, EventStream& status)
{
    reportKind(TransferKind::kWaypoints, data, "waypoint", status, reportWaypoint);
    reportKind(TransferKind::kRoutes, data, "route", status, reportRoute);
    reportKind(TransferKind::kTracks, data, "track", status, reportTrack);
    status.gpsStateChange(0);
}

} // namespace host
