// SPDX-License-Identifier: MIT
// A driver drops a record that it cannot write, and merges records with the same name, without
// reporting either. So the records are compared with what the planned files decode to. Names cannot
// be compared, since a device cuts and numbers them.

#include "host/transfer/MissingRecords.h"

#include "host/points/DevicePositionSet.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <iterator>

namespace host {
namespace {

// Visits each element of a list. One that is not a record cannot be written, and counts as an empty
// record here, so that it is reported as missing.
template <typename Visitor>
void forEachElement(const gps::Dictionary& data, std::string_view key, const Visitor& visit)
{
    const auto* const elements = data.findArray(key);
    if (elements == nullptr)
        return;
    const gps::Dictionary empty;
    for (const auto& element : *elements) {
        const auto* const record = element.as<gps::Dictionary>();
        visit(record != nullptr ? *record : empty);
    }
}

template <typename Visitor>
void forEachPointOf(const gps::Dictionary& data, std::string_view key, const Visitor& visit)
{
    forEachElement(data, key,
                   [&](const gps::Dictionary& record) { forEachElement(record, "points", visit); });
}

std::optional<std::string> nameOf(const gps::Dictionary& record)
{
    const auto* const name = record.findString("name");
    return name != nullptr ? std::optional{*name} : std::nullopt;
}

// Tracks are planned in order, until no name is free.
std::vector<MissingRecord> unplannedTracks(const gps::Dictionary& data, const gps::SendPlan& plan)
{
    auto planned = std::count_if(plan.files.begin(), plan.files.end(),
                                 [](const auto& file) { return file.kind == "tracks"; });
    std::vector<MissingRecord> missing;
    forEachElement(data, "track", [&](const gps::Dictionary& track) {
        if (planned-- <= 0)
            missing.push_back({"track", nameOf(track)});
    });
    return missing;
}

// The positions in the planned files, by kind.
class PlannedPositions {
public:
    PlannedPositions(const gps::SendPlan& plan, const gps::GPSFileDevice& device)
    {
        for (const auto& file : plan.files) {
            if (file.action != gps::PlannedFile::Action::kSkip)
                device.visitPointsIn(file.path, file.content,
                                     [this](std::string_view key, const gps::GPSPoint& point) {
                                         positionsOf(key).add(point);
                                     });
        }
    }

    DevicePositionSet waypoints;
    DevicePositionSet routePoints;
    DevicePositionSet trackPoints;

private:
    DevicePositionSet& positionsOf(std::string_view key)
    {
        if (key == "track")
            return trackPoints;
        return key == "route" ? routePoints : waypoints;
    }
};

} // namespace

std::vector<MissingRecord> missingRecords(const gps::Dictionary& data, const gps::SendPlan& plan,
                                          const gps::GPSFileDevice& device)
{
    PlannedPositions planned{plan, device};
    std::vector<MissingRecord> missing;
    const auto check = [&missing](std::string_view kind, DevicePositionSet& positions) {
        return [&missing, &positions, kind](const gps::Dictionary& record) {
            const auto* const point = gps::findPoint(record);
            if (point != nullptr && positions.contains(*point))
                return;
            const bool isCache = kind == "waypoint" && gps::isGeocache(record);
            missing.push_back({isCache ? "geocache" : kind, nameOf(record)});
        };
    };
    forEachElement(data, "waypoint", check("waypoint", planned.waypoints));
    forEachPointOf(data, "route", check("route point", planned.routePoints));
    forEachPointOf(data, "track", check("track point", planned.trackPoints));
    return missing;
}

std::vector<MissingRecord> unplannedRecords(const gps::Dictionary& data, const gps::SendPlan& plan,
                                            const gps::GPSFileDevice& device)
{
    const auto isBlocked = [](const gps::PlannedFile& file) {
        return file.action == gps::PlannedFile::Action::kSkip && file.error;
    };
    if (std::any_of(plan.files.begin(), plan.files.end(), isBlocked))
        return {};
    auto missing = missingRecords(data, plan, device);
    auto tracks = unplannedTracks(data, plan);
    if (!tracks.empty())
        std::erase_if(missing, [](const auto& record) { return record.kind == "track point"; });
    missing.insert(missing.end(), std::make_move_iterator(tracks.begin()),
                   std::make_move_iterator(tracks.end()));
    return missing;
}

} // namespace host
