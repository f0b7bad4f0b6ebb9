// SPDX-License-Identifier: MIT
// Files of waypoints can hold geocaches that were sent to a device without a folder for them, and a
// record that was read from there has a geocache's symbol. So the file decides what its records
// are.

#include "host/transfer/SentRecords.h"

#include "host/base/RecordText.h"
#include "host/transfer/PresentFiles.h"

#include <gps/Geocache.h>

namespace host {
SentRecords::SentRecords(const gps::Dictionary& data, const gps::SendPlan& plan,
                         const gps::GPSFileDevice& device)
    : comparison_(device)
{
    std::size_t count = 0;
    for (const auto key : {kWaypointScope.key, kRouteScope.key}) {
        const auto* const records = data.findArray(key);
        count += records != nullptr ? records->size() : 0;
    }
    records_.reserve(count);
    const bool areGeocachesWaypoints = hasKind(plan, "waypoints") && !hasKind(plan, "geocaches");
    for (const auto key : {kWaypointScope.key, kRouteScope.key})
        add(data, key, areGeocachesWaypoints, device.longestName());
}

void SentRecords::add(const gps::Dictionary& data, std::string_view key, bool areGeocachesWaypoints,
                      std::size_t longestName)
{
    const auto* const elements = data.findArray(key);
    if (elements == nullptr)
        return;
    for (const auto& element : *elements) {
        const auto* record = element.as<gps::Dictionary>();
        const auto* scope = key == kRouteScope.key ? &kRouteScope : &kWaypointScope;
        if (record != nullptr && scope == &kWaypointScope && gps::isGeocache(*record))
            scope = &kGeocacheScope;
        const auto* fileScope = scope;
        if (scope == &kGeocacheScope && areGeocachesWaypoints) {
            fileScope = &kWaypointScope;
            if (nameOf(*record).size() > longestName) {
                const std::string name{nameOf(*record).substr(0, longestName)};
                cut_.push_back(*record);
                cut_.back().set("name", name);
                record = &cut_.back();
            }
        }
        const auto name = record != nullptr ? nameOf(*record) : std::string_view{};
        records_.push_back({scope, fileScope, record, name});
    }
}

// Filled on the first look-up.
const std::unordered_multimap<std::string_view, std::size_t>& SentRecords::byName()
{
    if (byName_.empty()) {
        byName_.reserve(records_.size());
        for (std::size_t i = 0; i < records_.size(); ++i)
            byName_.emplace(records_[i].name, i);
    }
    return byName_;
}

std::string_view SentRecords::nameOf(const gps::Dictionary& record)
{
    return textIn(record, "name");
}

const RecordScope& SentRecords::scopeOf(std::string_view file, std::string_view key,
                                        const gps::Dictionary& inFile)
{
    if (key == kRouteScope.key)
        return kRouteScope;
    const bool isGeocache = file == "geocaches" || (file.empty() && gps::isGeocache(inFile));
    return isGeocache ? kGeocacheScope : kWaypointScope;
}

} // namespace host
