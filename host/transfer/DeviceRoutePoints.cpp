// SPDX-License-Identifier: MIT
// Route points are looked up by name, so that a route of any length takes linear time.

#include "host/transfer/DeviceRoutePoints.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/transfer/RecordComparison.h"

#include <string_view>
#include <unordered_map>

namespace host {
namespace {

template <typename DictionaryType, typename Visitor>
void forEachRoutePoint(DictionaryType& data, const Visitor& visit)
{
    forEachRecord(data, "route", [&](auto& route) { forEachRecord(route, "points", visit); });
}

} // namespace

void useDeviceRoutePoints(gps::Dictionary& data, const gps::Dictionary& onDevice,
                          const gps::GPSFileDevice& device)
{
    // Views into `onDevice`, which does not change.
    std::unordered_multimap<std::string_view, const gps::Dictionary*> byName;
    forEachRoutePoint(onDevice, [&](const gps::Dictionary& point) {
        byName.emplace(textIn(point, "name"), &point);
    });
    RecordComparison comparison{device};
    forEachRoutePoint(data, [&](gps::Dictionary& point) {
        for (auto [at, end] = byName.equal_range(textIn(point, "name")); at != end; ++at) {
            if (comparison.areSameWaypoints(point, *at->second)) {
                point = *at->second;
                return;
            }
        }
    });
}

} // namespace host
