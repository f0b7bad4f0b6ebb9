// SPDX-License-Identifier: MIT
// Both plans went through the same merge, so that what it does to every file cancels out.

#include "host/transfer/ChangedRoutes.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
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

} // namespace

std::optional<std::string> changedRoute(const gps::Dictionary& data, const gps::SendPlan& before,
                                        const gps::SendPlan& plan, const gps::GPSFileDevice& device)
{
    if (!writesRoutes(plan))
        return std::nullopt;
    auto expected = routesIn(before, device);
    const auto planned = routesIn(plan, device);
    RecordComparison comparison{device};
    Routes sent; // of one name, the last
    forEachRecord(data, "route", [&](const gps::Dictionary& route) {
        const std::string name{textIn(route, "name")};
        expected.erase(name);
        sent[name] = withoutPointNames(route);
    });
    for (const auto& [name, route] : expected) {
        const auto found = planned.find(name);
        if (found == planned.end() || !comparison.areSameRoutes(route, found->second))
            return name;
    }
    for (const auto& [name, route] : sent) {
        const auto found = planned.find(name);
        if (found == planned.end() ||
            !comparison.areSameRoutes(route, withoutPointNames(found->second)))
            return name;
    }
    return std::nullopt;
}

} // namespace host
