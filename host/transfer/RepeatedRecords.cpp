// SPDX-License-Identifier: MIT
// Names that were fitted are the same only for records that are the same, so a record is compared
// with the first of its name alone.

#include "host/transfer/RepeatedRecords.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/transfer/RecordScope.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host {
namespace {

// The records of a scope that came before, by name.
class EarlierRecords {
public:
    EarlierRecords(const RecordScope& scope, RecordComparison& comparison,
                   const RepeatVisitor& visit)
        : scope_(scope), comparison_(comparison), visit_(visit)
    {}

    [[nodiscard]] bool haveSame(const gps::Dictionary& record)
    {
        if (!scope_.contains(record))
            return false;
        const auto [first, isNew] = firsts_.try_emplace(textIn(record, "name"), &record);
        const bool isRepeated = !isNew && scope_.areSame(comparison_, record, *first->second);
        if (isRepeated && visit_)
            visit_(scope_.key, record, *first->second);
        return isRepeated;
    }

private:
    const RecordScope& scope_;
    RecordComparison& comparison_;
    const RepeatVisitor& visit_;
    std::unordered_map<std::string_view, const gps::Dictionary*> firsts_;
};

// Whether two records may have the same name. Takes much less time than a table of names, and there
// are hardly ever any.
bool mayBeRepeated(const gps::Dictionary& data)
{
    std::vector<std::size_t> hashes;
    for (const auto* const scope : {&kWaypointScope, &kRouteScope}) {
        hashes.clear();
        forEachRecord(data, scope->key, [&](const gps::Dictionary& record) {
            hashes.push_back(std::hash<std::string_view>{}(textIn(record, "name")));
        });
        std::sort(hashes.begin(), hashes.end());
        if (std::adjacent_find(hashes.begin(), hashes.end()) != hashes.end())
            return true;
    }
    return false;
}

} // namespace

RecordCounts removeRepeatedRecords(gps::Dictionary& data, const gps::GPSFileDevice& device,
                                   const RepeatVisitor& visit)
{
    if (!mayBeRepeated(data))
        return {};
    const auto before = countRecords(data);
    RecordComparison comparison{device};
    EarlierRecords waypoints{kWaypointScope, comparison, visit};
    EarlierRecords geocaches{kGeocacheScope, comparison, visit};
    EarlierRecords routes{kRouteScope, comparison, visit};
    removeRecords(data, kWaypointScope.key, [&](const gps::Dictionary& record) {
        return waypoints.haveSame(record) || geocaches.haveSame(record);
    });
    removeRecords(data, kRouteScope.key,
                  [&](const gps::Dictionary& record) { return routes.haveSame(record); });
    return removedSince(before, data);
}

} // namespace host
