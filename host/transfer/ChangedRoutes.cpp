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

gps::Dictionary withoutPointNames(gps::Dictionary route)
{
    forEachRecord(route, "points", [](gps::Dictionary& point) { point.remove("name"); });
    return route;
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

std::optional<std::string> distortedRoute(const gps::Dictionary& data, const gps::SendPlan& plan,
                                          const gps::GPSFileDevice& device)
{
    if (!writesRoutes(plan))
        return std::nullopt;
    Routes sent; // of one name, the last
    forEachRecord(data, "route", [&](const gps::Dictionary& route) {
        sent.insert_or_assign(std::string{textIn(route, "name")}, withoutPointNames(route));
    });
    const auto planned = routesIn(plan, device);
    RecordComparison comparison{device};
    for (const auto& [name, route] : sent) {
        if (!canBeStored(route))
            continue;
        const auto found = planned.find(name);
        if (found == planned.end() ||
            !comparison.areSameRoutes(route, withoutPointNames(found->second)))
            return name;
    }
    return std::nullopt;
}

} // namespace host
