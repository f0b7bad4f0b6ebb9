// SPDX-License-Identifier: MIT
// A driver drops a record that it cannot write, and merges records with the same name, without
// reporting either. So the records are compared with what the planned files decode to. Names cannot
// be compared, since a device cuts and numbers them.

#include "host/transfer/MissingRecords.h"

#include "host/points/DevicePositionSet.h"

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
            const auto* const name = record.findString("name");
            missing.push_back({kind, name != nullptr ? std::optional{*name} : std::nullopt});
        };
    };
    forEachElement(data, "waypoint", check("waypoint", planned.waypoints));
    forEachPointOf(data, "route", check("route point", planned.routePoints));
    forEachPointOf(data, "track", check("track point", planned.trackPoints));
    return missing;
}

} // namespace host
