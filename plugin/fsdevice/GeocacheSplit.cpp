// SPDX-License-Identifier: MIT

#include "GeocacheSplit.h"

#include <algorithm>
#include <utility>

namespace magellan {
namespace {

bool isGeocache(const gps::Value& value)
{
    const auto* record = value.as<gps::Dictionary>();
    const auto* symbol = record != nullptr ? record->findString("symbol") : nullptr;
    return symbol != nullptr && symbol->starts_with("Geocache");
}

std::optional<gps::Array> unlessEmpty(gps::Array list)
{
    return list.empty() ? std::nullopt : std::optional{std::move(list)};
}

} // namespace

SplitList extractGeocachesFromList(const gps::Array& list)
{
    // Whatever equals a geocache has its symbol and so is one too: one test a record tells both
    // lists.
    gps::Array waypoints;
    gps::Array geocaches;
    for (const auto& record : list)
        (isGeocache(record) ? geocaches : waypoints).push_back(record);
    std::reverse(geocaches.begin(), geocaches.end());
    return {unlessEmpty(std::move(waypoints)), unlessEmpty(std::move(geocaches))};
}

} // namespace magellan
