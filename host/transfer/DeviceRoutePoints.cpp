// SPDX-License-Identifier: MIT
// Route points are looked up by name, so that a route of any length takes linear time.

#include "host/transfer/DeviceRoutePoints.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/transfer/RecordComparison.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace host {
namespace {

// The route points to send that may be replaced, by name.
class ReplaceablePoints {
public:
    ReplaceablePoints(gps::Dictionary& data, RecordComparison& comparison) : comparison_(comparison)
    {
        forEachRecord(data, "route", [this](gps::Dictionary& route) {
            forEachRecord(route, "points", [this](gps::Dictionary& point) {
                byName_.emplace(textIn(point, "name"), &point);
            });
        });
    }

    [[nodiscard]] bool empty() const noexcept { return byName_.empty(); }

    // Each point is replaced once, by the first of the device's points that is the same.
    void replaceWith(const gps::Dictionary& onDevice)
    {
        auto [at, end] = byName_.equal_range(textIn(onDevice, "name"));
        while (at != end) {
            auto& point = *at->second;
            if (!comparison_.areSameWaypoints(point, onDevice)) {
                ++at;
                continue;
            }
            at = byName_.erase(at); // its key is a view into the point
            point = onDevice;
        }
    }

private:
    RecordComparison& comparison_;
    std::unordered_multimap<std::string_view, gps::Dictionary*> byName_;
};

// Makes route points equal that the device would store exactly like the first of their name.
void unifyRoutePoints(gps::Dictionary& data, RecordComparison& comparison)
{
    std::unordered_map<std::string, const gps::Dictionary*> firstOfName;
    forEachRecord(data, "route", [&](gps::Dictionary& route) {
        forEachRecord(route, "points", [&](gps::Dictionary& point) {
            const auto [first, isNew] =
                firstOfName.try_emplace(std::string{textIn(point, "name")}, &point);
            if (!isNew && comparison.areSameWaypoints(point, *first->second))
                point = *first->second;
        });
    });
}

} // namespace

void useDeviceRoutePoints(gps::Dictionary& data, const RecordSource& onDevice,
                          const gps::GPSFileDevice& device)
{
    RecordComparison comparison{device};
    unifyRoutePoints(data, comparison);
    ReplaceablePoints points{data, comparison};
    if (points.empty())
        return;
    onDevice([&](std::string_view key, const gps::Dictionary& record) {
        if (key == kRoutePointKey)
            points.replaceWith(record);
        else if (key == "route")
            forEachRecord(record, "points",
                          [&](const gps::Dictionary& point) { points.replaceWith(point); });
    });
}

} // namespace host
