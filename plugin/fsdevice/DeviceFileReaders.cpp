// SPDX-License-Identifier: MIT
// Each line is checked and split once; the sentence kinds work on its fields. One point and one
// extras dictionary serve a whole file, so a warm reader allocates nothing per line.

#include "DeviceFileReaders.h"

#include "../codec/GeoCacheSentence.h"
#include "../codec/RouteSentence.h"
#include "../codec/SentenceFields.h"
#include "../codec/TrackPointSentence.h"
#include "../codec/WayPointSentence.h"
#include "../common/Errors.h"
#include "../common/Lines.h"
#include "../common/NameTable.h"
#include "../common/Records.h"
#include "../common/TrackAnnouncer.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/GPSUtilities/NMEAUtils.h>
#include <platform/System/FileManager.h>
#include <platform/System/Log.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace magellan {
namespace {

/// A kind whose files hold one record per line, identified by name.
struct NamedKind {
    RecordKind kind;
    std::string_view sentence;
    void (*read)(const SentenceFields& fields, gps::GPSPoint& point, gps::Dictionary* record);
    std::optional<std::string_view> (*nameIn)(const SentenceFields& fields);
};

constexpr NamedKind kWayPoints{RecordKind::kWaypoints, kWayPointSentence, readWayPoint,
                               wayPointName};
constexpr NamedKind kGeoCaches{RecordKind::kGeocaches, kGeoCacheSentence, readGeoCache,
                               geoCacheName};

constexpr std::size_t kUsualKeys = 5; ///< in a record

std::string_view readErrorMessage(RecordKind kind)
{
    switch (kind) {
    case RecordKind::kTracks:
        return "Couldn't read track data from device";
    case RecordKind::kWaypoints:
        return "Couldn't read waypoint data from device";
    case RecordKind::kGeocaches:
        return "Couldn't read geocache data from device";
    case RecordKind::kRoutes:
        break;
    }
    return "Couldn't read route data from device";
}

/// Calls `visit` with the fields of each line that is a sentence of the given name.
template <typename Visit>
void forEachSentence(std::string_view text, std::string_view name, Visit visit)
{
    forEachLine(text, [&](std::string_view line) {
        if (const auto fields = SentenceFields::ofSentence(line, name))
            visit(*fields);
    });
}

void collect(const NamedKind& kind, std::string_view text, gps::Dictionary& records)
{
    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    forEachSentence(text, kind.sentence, [&](const SentenceFields& fields) {
        extras.clear();
        kind.read(fields, point, &extras);
        keepByName(extras, point, records);
    });
}

/// Like collect(), but streams: it remembers only the fields of the last sentence of each name, as
/// views into the text, instead of building a record for every line.
std::optional<gps::Error> report(const NamedKind& kind, gps::GPSOutputReceiver& status,
                                 const std::string& path)
{
    std::string text;
    if (auto error = readDeviceFile(kind.kind, path, text))
        return error;
    NameTable names;
    std::vector<SentenceFields> lastOfName; // by index in `names`
    forEachSentence(text, kind.sentence, [&](const SentenceFields& fields) {
        const auto name = kind.nameIn(fields);
        if (!name)
            return;
        const auto index = names.indexOf(*name);
        if (index == lastOfName.size())
            lastOfName.push_back(fields);
        else
            lastOfName[index] = fields;
    });

    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    for (const auto& fields : lastOfName) {
        extras.clear();
        kind.read(fields, point, &extras);
        status.wayPoint(point, extras);
    }
    return std::nullopt;
}

/// Stores a complete route under its name, which each of its sentences has set, and empties `info`
/// and `points` for the next route.
void storeRoute(gps::Dictionary& info, gps::Array& points, gps::Dictionary& routes)
{
    info.set("points", std::exchange(points, {}));
    const std::string name = *info.findString("name");
    routes.set(name, std::exchange(info, {}));
}

void reportStoredRoute(gps::GPSOutputReceiver& status, gps::Dictionary route)
{
    const gps::Value points = std::exchange(*route.find("points"), gps::Array{});
    route.remove("points");
    reportRoute(route, *points.as<gps::Array>(), status);
}

} // namespace

std::optional<gps::Error> acquireTracks(gps::GPSOutputReceiver& status, const std::string& path)
{
    std::string text;
    if (readDeviceFile(RecordKind::kTracks, path, text))
        return std::nullopt;
    gps::GPSPoint point; // kept from line to line: a line without a date uses the previous day
    gps::Dictionary extras;
    extras.reserve(3);
    TrackAnnouncer announcer{status};
    forEachSentence(text, kTrackPointSentence, [&](const SentenceFields& fields) {
        extras.clear();
        readTrackPoint(fields, point, &extras);
        announcer.beforePoint(extras);
        status.trackPoint(point, extras);
    });
    return std::nullopt;
}

std::optional<gps::Error> acquireWayPoints(gps::GPSOutputReceiver& status, const std::string& path)
{
    return report(kWayPoints, status, path);
}

std::optional<gps::Error> acquireGeoCaches(gps::GPSOutputReceiver& status, const std::string& path)
{
    return report(kGeoCaches, status, path);
}

std::optional<gps::Error> acquireRoutes(gps::GPSOutputReceiver& status, const std::string& path)
{
    gps::Dictionary waypoints;
    gps::Dictionary routes;
    acquireRoutesFromPath(path, waypoints, routes);
    for (const auto& [name, route] : routes)
        reportStoredRoute(status, *route.as<gps::Dictionary>());
    return std::nullopt;
}

std::optional<gps::Error> acquireWayPointsFromPath(const std::string& path,
                                                   gps::Dictionary& records)
{
    std::string text;
    if (auto error = readDeviceFile(RecordKind::kWaypoints, path, text))
        return error;
    collectWayPoints(text, records);
    return std::nullopt;
}

std::optional<gps::Error> acquireGeoCachesFromPath(const std::string& path,
                                                   gps::Dictionary& records)
{
    std::string text;
    if (auto error = readDeviceFile(RecordKind::kGeocaches, path, text))
        return error;
    collectGeoCaches(text, records);
    return std::nullopt;
}

std::optional<gps::Error> acquireRoutesFromPath(const std::string& path, gps::Dictionary& waypoints,
                                                gps::Dictionary& routes)
{
    std::string text;
    if (!readDeviceFile(RecordKind::kRoutes, path, text))
        collectRoutes(text, waypoints, routes);
    return std::nullopt;
}

void collectWayPoints(std::string_view text, gps::Dictionary& records)
{
    collect(kWayPoints, text, records);
}

void collectGeoCaches(std::string_view text, gps::Dictionary& records)
{
    collect(kGeoCaches, text, records);
}

gps::Array collectTrackPoints(std::string_view text)
{
    gps::Array points;
    gps::GPSPoint point; // kept from line to line: a line without a date uses the previous day
    forEachSentence(text, kTrackPointSentence, [&](const SentenceFields& fields) {
        readTrackPoint(fields, point, nullptr);
        points.emplace_back(gps::Dictionary{{gps::kPointKey, point}});
    });
    return points;
}

void collectRoutes(std::string_view text, gps::Dictionary& waypoints, gps::Dictionary& routes)
{
    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    gps::Array points;
    gps::Dictionary info;
    std::size_t room = kRoutePointRoom;
    forEachLine(text, [&](std::string_view line) {
        const auto body = gps::NMEAUtils::checkAndTrimNMEASentence(line);
        if (!body)
            return;
        if (const auto wayPoint = SentenceFields::ofBody(*body, kWayPointSentence)) {
            extras.clear();
            readWayPoint(*wayPoint, point, &extras);
            keepByName(extras, point, waypoints);
        } else if (const auto route = SentenceFields::ofBody(*body, kRouteSentence)) {
            if (readRoute(*route, points, waypoints, info, room))
                storeRoute(info, points, routes);
        }
    });
}

std::optional<gps::Error> readDeviceFile(RecordKind kind, const std::string& path,
                                         std::string& text)
{
    auto error = gps::FileManager{}.readAsciiFile(path, text);
    if (error)
        gps::logError(kFilesLogSource, makeError(ErrorCode::kReadFailed, readErrorMessage(kind),
                                                 kSuggestMounting, path)
                                           .causedBy(*error));
    return error;
}

} // namespace magellan
