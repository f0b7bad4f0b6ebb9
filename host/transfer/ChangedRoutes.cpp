// SPDX-License-Identifier: MIT
// Both plans went through the same merge, so that what it does to every file cancels out.

#include "host/transfer/ChangedRoutes.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/points/DevicePosition.h"
#include "host/transfer/RecordComparison.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string_view>
#include <unordered_map>

namespace host {
namespace {

using Routes = std::map<std::string, gps::Dictionary, std::less<>>; // by name

Routes routesIn(const gps::SendPlan& plan, const gps::GPSFileDevice& device)
{
    Routes routes;
    for (const auto& file : plan.files) {
        if (file.action == gps::PlannedFile::Action::kSkip || file.kind != "routes")
            continue;
        device.visitRecordsIn(file.path, file.content,
                              [&](std::string_view key, const gps::Dictionary& record) {
                                  if (key == "route")
                                      routes[std::string{textIn(record, "name")}] = record;
                              });
    }
    return routes;
}

bool writesRoutes(const gps::SendPlan& plan)
{
    return std::any_of(plan.files.begin(), plan.files.end(), [](const gps::PlannedFile& file) {
        return file.action != gps::PlannedFile::Action::kSkip && file.kind == "routes";
    });
}

using Points = std::unordered_multimap<std::string, gps::Dictionary>; // by name

// The points in the planned files of routes.
// @param areAll  false: only those that no route uses
Points pointsIn(const gps::SendPlan& plan, const gps::GPSFileDevice& device, bool areAll)
{
    Points points;
    const auto add = [&points](const gps::Dictionary& point) {
        points.emplace(textIn(point, "name"), point);
    };
    const auto* const unused = dynamic_cast<const gps::GPSUnusedRoutePoints*>(&device);
    for (const auto& file : plan.files) {
        if (file.action == gps::PlannedFile::Action::kSkip || file.kind != "routes")
            continue;
        if (unused != nullptr)
            unused->visitUnusedRoutePointsIn(file.path, file.content, add);
        if (areAll)
            device.visitRecordsIn(file.path, file.content,
                                  [&](std::string_view, const gps::Dictionary& record) {
                                      forEachRecord(record, "points", add);
                                  });
    }
    return points;
}

// Points without valid coordinates are reported as missing.
bool canBeStored(const gps::Dictionary& route)
{
    const auto* const points = route.findArray("points");
    return points != nullptr &&
           std::all_of(points->begin(), points->end(), [](const gps::Value& value) {
               const auto* const record = value.as<gps::Dictionary>();
               const auto* const point = record != nullptr ? gps::findPoint(*record) : nullptr;
               return point != nullptr && DevicePosition::of(*point);
           });
}

} // namespace

std::optional<std::string> changedRoute(const gps::Dictionary& data, const gps::SendPlan& before,
                                        const gps::SendPlan& plan, const gps::GPSFileDevice& device)
{
    if (!writesRoutes(plan))
        return std::nullopt;
    auto expected = routesIn(before, device);
    forEachRecord(data, "route", [&](const gps::Dictionary& route) {
        if (const auto sent = expected.find(textIn(route, "name")); sent != expected.end())
            expected.erase(sent);
    });
    const auto planned = routesIn(plan, device);
    RecordComparison comparison{device};
    for (const auto& [name, route] : expected) {
        const auto found = planned.find(name);
        if (found == planned.end() || !comparison.areSameRoutes(route, found->second))
            return name;
    }
    return std::nullopt;
}

std::optional<std::string> changedPoint(const gps::SendPlan& before, const gps::SendPlan& plan,
                                        const gps::GPSFileDevice& device)
{
    if (!writesRoutes(plan))
        return std::nullopt;
    const auto expected = pointsIn(before, device, false);
    if (expected.empty())
        return std::nullopt;
    const auto planned = pointsIn(plan, device, true);
    RecordComparison comparison{device};
    for (const auto& [name, point] : expected) {
        const auto [first, last] = planned.equal_range(name);
        const bool isKept = std::any_of(first, last, [&, &point = point](const auto& other) {
            return comparison.areSameWaypoints(point, other.second);
        });
        if (!isKept)
            return name;
    }
    return std::nullopt;
}

std::optional<std::string> distortedRoute(const gps::Dictionary& data, const gps::SendPlan& plan,
                                          const gps::GPSFileDevice& device)
{
    if (!writesRoutes(plan))
        return std::nullopt;
    std::map<std::string_view, const gps::Dictionary*> sent; // of one name, the last
    forEachRecord(data, "route", [&](const gps::Dictionary& route) {
        sent.insert_or_assign(textIn(route, "name"), &route);
    });
    const auto planned = routesIn(plan, device);
    RecordComparison comparison{device};
    for (const auto& [name, route] : sent) {
        if (!canBeStored(*route))
            continue;
        const auto found = planned.find(name);
        if (found == planned.end() || !comparison.areSameButForPointNames(*route, found->second))
            return std::string{name};
    }
    return std::nullopt;
}

} // namespace host
