// SPDX-License-Identifier: MIT
// Looks before it changes anything: a list that is changed is copied first if somebody shares it.

#include "host/transfer/RecordScope.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace host {

const RecordScope kWaypointScope{
    "waypoint", "waypoint", [](const gps::Dictionary& record) { return !gps::isGeocache(record); },
    [](RecordComparison& comparison, const gps::Dictionary& a, const gps::Dictionary& b) {
        return comparison.areSameWaypoints(a, b);
    }};
const RecordScope kGeocacheScope{
    "geocache", "waypoint", [](const gps::Dictionary& record) { return gps::isGeocache(record); },
    [](RecordComparison&, const gps::Dictionary& a, const gps::Dictionary& b) {
        return RecordComparison::areSameGeocaches(a, b);
    }};
const RecordScope kRouteScope{
    "route", "route", [](const gps::Dictionary&) { return true; },
    [](RecordComparison& comparison, const gps::Dictionary& a, const gps::Dictionary& b) {
        return comparison.areSameRoutes(a, b);
    }};

void removeRecords(gps::Dictionary& data, std::string_view key,
                   const std::function<bool(const gps::Dictionary& record)>& isRemoved)
{
    const auto* const records = std::as_const(data).findArray(key);
    if (records == nullptr)
        return;
    std::vector<bool> removed;
    removed.reserve(records->size());
    for (const auto& value : *records) {
        const auto* const record = value.as<gps::Dictionary>();
        removed.push_back(record != nullptr && isRemoved(*record));
    }
    if (std::find(removed.begin(), removed.end(), true) == removed.end())
        return;
    auto& changed = *data.findArray(key);
    auto isNextRemoved = removed.begin();
    std::erase_if(changed, [&](const gps::Value&) { return *isNextRemoved++; });
    if (changed.empty())
        data.remove(key);
}

} // namespace host
