// SPDX-License-Identifier: MIT
// Works on the records of one scope at a time: those that share their names.

#include "host/transfer/PresentRecords.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/transfer/RecordComparison.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace host {
namespace {

// Which records share their names, and when two of them are the same.
struct Scope {
    const char* key;
    bool (*contains)(const gps::Dictionary& record);
    bool (*areSame)(RecordComparison& comparison, const gps::Dictionary& a,
                    const gps::Dictionary& b);
};

constexpr Scope kWaypoints{
    "waypoint", [](const gps::Dictionary& record) { return !gps::isGeocache(record); },
    [](RecordComparison& comparison, const gps::Dictionary& a, const gps::Dictionary& b) {
        return comparison.areSameWaypoints(a, b);
    }};
constexpr Scope kGeocaches{
    "waypoint", [](const gps::Dictionary& record) { return gps::isGeocache(record); },
    [](RecordComparison&, const gps::Dictionary& a, const gps::Dictionary& b) {
        return RecordComparison::areSameGeocaches(a, b);
    }};
constexpr Scope kRoutes{"route", [](const gps::Dictionary&) { return true; },
                        [](RecordComparison& comparison, const gps::Dictionary& a,
                           const gps::Dictionary& b) { return comparison.areSameRoutes(a, b); }};

class PresentRecords {
public:
    PresentRecords(const Scope& scope, const gps::Dictionary& onDevice,
                   RecordComparison& comparison)
        : scope_(scope), comparison_(comparison)
    {
        forEachRecord(onDevice, scope.key, [this](const gps::Dictionary& record) {
            if (scope_.contains(record))
                byName_.emplace(textIn(record, "name"), &record);
        });
    }

    // Removes the records that the device holds. @return  how many
    std::size_t removeFrom(gps::Dictionary& data)
    {
        auto* const records = data.findArray(scope_.key);
        if (records == nullptr || byName_.empty())
            return 0;
        forEachRecord(std::as_const(data), scope_.key, [this](const gps::Dictionary& record) {
            if (scope_.contains(record) && isChanged(record))
                changed_.emplace(textIn(record, "name"));
        });
        const auto before = records->size();
        std::erase_if(*records, [this](const gps::Value& element) {
            const auto* const record = element.as<gps::Dictionary>();
            return record != nullptr && scope_.contains(*record) && isPresent(*record);
        });
        const auto removed = before - records->size();
        if (removed > 0 && records->empty())
            data.remove(scope_.key);
        return removed;
    }

private:
    // Whether the device holds something else under the same name.
    [[nodiscard]] bool isChanged(const gps::Dictionary& record)
    {
        const auto [begin, end] = byName_.equal_range(textIn(record, "name"));
        return std::any_of(begin, end, [&](const auto& present) {
            return !scope_.areSame(comparison_, record, *present.second);
        });
    }

    [[nodiscard]] bool isPresent(const gps::Dictionary& record) const
    {
        const auto name = textIn(record, "name");
        return byName_.contains(name) && !changed_.contains(std::string{name});
    }

    const Scope& scope_;
    RecordComparison& comparison_;
    std::unordered_multimap<std::string_view, const gps::Dictionary*> byName_; // on the device
    std::unordered_set<std::string> changed_; // names of which a record differs
};

} // namespace

RecordCounts removePresentRecords(gps::Dictionary& data, const gps::Dictionary& onDevice,
                                  const gps::GPSFileDevice& device)
{
    const auto before = countRecords(data);
    RecordComparison comparison{device};
    RecordCounts removed;
    removed.waypoints = PresentRecords{kWaypoints, onDevice, comparison}.removeFrom(data);
    removed.geocaches = PresentRecords{kGeocaches, onDevice, comparison}.removeFrom(data);
    removed.routes = PresentRecords{kRoutes, onDevice, comparison}.removeFrom(data);
    removed.routePoints = before.routePoints - countRecords(data).routePoints;
    return removed;
}

} // namespace host
