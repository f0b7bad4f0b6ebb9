// SPDX-License-Identifier: MIT
// One pass: a record that equals a geocache has the same symbol, so it is a geocache as well.

#include "GeocacheSplit.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <utility>

namespace magellan {
namespace {

bool isGeocacheRecord(const gps::Value& value)
{
    const auto* record = value.as<gps::Dictionary>();
    return record != nullptr && gps::isGeocache(*record);
}

std::optional<gps::Array> unlessEmpty(gps::Array list)
{
    return list.empty() ? std::nullopt : std::optional{std::move(list)};
}

} // namespace

bool hasGeocache(const gps::Array& list)
{
    return std::any_of(list.begin(), list.end(), isGeocacheRecord);
}

SplitList extractGeocachesFromList(const gps::Array& list)
{
    gps::Array waypoints;
    gps::Array geocaches;
    for (const auto& record : list)
        (isGeocacheRecord(record) ? geocaches : waypoints).push_back(record);
    std::reverse(geocaches.begin(), geocaches.end());
    return {unlessEmpty(std::move(waypoints)), unlessEmpty(std::move(geocaches))};
}

} // namespace magellan
