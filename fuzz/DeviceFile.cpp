// SPDX-License-Identifier: MIT
// Inputs are written to an anonymous memory file, because the readers take a path: thousands of
// inputs a second then leave nothing behind in any folder.

#include "DeviceFile.h"

#include <utility>

#include <sys/mman.h>
#include <unistd.h>

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

std::string asFile(std::string_view text)
{
    static const int file = memfd_create("input", MFD_CLOEXEC);
    require(file >= 0 && ftruncate(file, 0) == 0, "a memory file can be created");
    require(pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
            "the file holds the whole text");
    return "/proc/self/fd/" + std::to_string(file);
}

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

} // namespace fuzz
