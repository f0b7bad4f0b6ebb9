// SPDX-License-Identifier: MIT

#include "DeviceFileReaders.h"

#include "../codec/GeoCacheSentence.h"
#include "../codec/RouteSentence.h"
#include "../codec/TrackPointSentence.h"
#include "../codec/WayPointSentence.h"
#include "../common/Errors.h"
#include "../common/Lines.h"
#include "../common/NameTable.h"
#include "../common/Records.h"
#include "../common/TrackNames.h"

#include <gps/GPSOutputReceiver.h>
#include <platform/System/FileManager.h>
#include <platform/System/Log.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace magellan {
namespace {

using Interpreter = bool (*)(std::string_view sentence, gps::GPSPoint& point,
                             gps::Dictionary* record);

/// A kind whose lines each are a record, kept by name.
struct NamedKind {
    std::string_view message; ///< of the read error
    Interpreter interpret;
    std::optional<std::string_view> (*nameIn)(std::string_view sentence);
};

constexpr NamedKind kWayPoints{"Couldn't read waypoint data from device", interpretWayPointSentence,
                               nameInWayPointSentence};
constexpr NamedKind kGeoCaches{"Couldn't read geocache data from device", interpretGeoCacheSentence,
                               nameInGeoCacheSentence};

constexpr std::size_t kUsualKeys = 5; ///< of a record

/// Reads a whole file. A failure is logged under the kind's message; what is answered is the
/// system's own error.
std::optional<gps::Error> readDeviceFile(const std::string& path, std::string_view message,
                                         std::string& text)
{
    auto error = gps::FileManager{}.readAsciiFile(path, text);
    if (error)
        gps::logError(
            kFilesLogSource,
            makeError(ErrorCode::kReadFailed, message, kSuggestMounting, path).causedBy(*error));
    return error;
}

std::optional<gps::Error> collect(const NamedKind& kind, const std::string& path,
                                  gps::Dictionary& records)
{
    std::string text;
    if (auto error = readDeviceFile(path, kind.message, text))
        return error;
    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    forEachLine(text, [&](std::string_view line) {
        extras.clear();
        if (kind.interpret(line, point, &extras))
            keepByName(extras, point, records);
    });
    return std::nullopt;
}

/// Reports what `collect` would gather, in the same order, without keeping the records: what it
/// keeps is where each name stands last. So a large file costs no memory but its text and its
/// names.
std::optional<gps::Error> report(const NamedKind& kind, gps::GPSOutputReceiver& status,
                                 const std::string& path)
{
    std::string text;
    if (auto error = readDeviceFile(path, kind.message, text))
        return error;
    NameTable names;
    std::vector<std::string_view> lastLines; // by the number of its name
    forEachLine(text, [&](std::string_view line) {
        const auto name = kind.nameIn(line);
        if (!name)
            return;
        const auto number = names.numberOf(*name);
        if (number == lastLines.size())
            lastLines.emplace_back();
        lastLines[number] = line;
    });

    gps::GPSPoint point;
    gps::Dictionary extras;
    for (const auto line : lastLines) {
        extras.clear();
        (void)kind.interpret(line, point, &extras);
        status.wayPoint(point, extras);
    }
    return std::nullopt;
}

/// Keeps a complete route under its name, which each of its sentences has set, and makes room for
/// the next one.
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
    if (readDeviceFile(path, "Couldn't read track data from device", text))
        return std::nullopt;
    gps::GPSPoint
        point; // one for the whole file: a line without a date takes its day from the line before
    gps::Dictionary extras;
    extras.reserve(3);
    TrackNames names{status};
    forEachLine(text, [&](std::string_view line) {
        extras.clear();
        if (!interpretTrackPointSentence(line, point, &extras))
            return;
        names.pointWith(extras);
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

std::optional<gps::Error> acquireWayPointsFromPath(const std::string& path,
                                                   gps::Dictionary& records)
{
    return collect(kWayPoints, path, records);
}

std::optional<gps::Error> acquireGeoCachesFromPath(const std::string& path,
                                                   gps::Dictionary& records)
{
    return collect(kGeoCaches, path, records);
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

std::optional<gps::Error> acquireRoutesFromPath(const std::string& path, gps::Dictionary& waypoints,
                                                gps::Dictionary& routes)
{
    std::string text;
    if (readDeviceFile(path, "Couldn't read route data from device", text))
        return std::nullopt;
    gps::GPSPoint point;
    gps::Dictionary extras;
    extras.reserve(kUsualKeys);
    gps::Array points;
    gps::Dictionary info;
    std::size_t room = kRoutePointRoom;
    forEachLine(text, [&](std::string_view line) {
        extras.clear();
        if (interpretWayPointSentence(line, point, &extras))
            keepByName(extras, point, waypoints);
        else if (interpretRouteSentence(line, points, waypoints, info, room))
            storeRoute(info, points, routes);
    });
    return std::nullopt;
}

} // namespace magellan
