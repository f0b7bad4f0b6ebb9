// SPDX-License-Identifier: MIT
// Counts before it changes anything: nearly all files have no such elevation, and looking at
// records is sooner done than changing them.

#include "host/fitting/Altitudes.h"

#include "host/fitting/RecordList.h"

#include <cmath>
#include <limits>
#include <utility>

namespace host {
namespace {

bool isImpossible(const gps::GPSPoint& point) noexcept
{
    const auto metres = std::trunc(point.altitude);
    return metres < kLowestAltitude || metres > kHighestAltitude; // false for a NaN
}

// Visits the records with a point: waypoints, and the points of routes and tracks.
template <typename DictionaryType, typename Visitor>
void forEachPoint(DictionaryType& data, const Visitor& visit)
{
    forEachRecord(data, "waypoint", visit);
    for (const char* const key : {"route", "track"})
        forEachRecord(data, key,
                      [&visit](DictionaryType& record) { forEachRecord(record, "points", visit); });
}

} // namespace

std::size_t clearImpossibleAltitudes(gps::Dictionary& data)
{
    std::size_t count = 0;
    forEachPoint(std::as_const(data), [&count](const gps::Dictionary& record) {
        const auto* const point = gps::findPoint(record);
        count += point != nullptr && isImpossible(*point) ? 1U : 0U;
    });
    if (count == 0)
        return 0;
    forEachPoint(data, [](gps::Dictionary& record) {
        const auto* const found = gps::findPoint(record);
        if (found == nullptr || !isImpossible(*found))
            return;
        auto point = *found;
        point.altitude = std::numeric_limits<double>::quiet_NaN();
        record.set(gps::kPointKey, point);
    });
    return count;
}

} // namespace host
