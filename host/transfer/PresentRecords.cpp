// SPDX-License-Identifier: MIT
// Indexes the records to send, which are in memory anyway, and visits the device's records once.

#include "host/transfer/PresentRecords.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/transfer/RecordComparison.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

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

// The records to send of one scope, by name, and what the device holds under each name.
class PresentRecords {
public:
    PresentRecords(const Scope& scope, const gps::Dictionary& data, RecordComparison& comparison)
        : scope_(scope), comparison_(comparison)
    {
        if (const auto* const records = data.findArray(scope.key))
            byName_.reserve(records->size());
        forEachRecord(data, scope.key, [this](const gps::Dictionary& record) {
            if (!scope_.contains(record))
                return;
            const auto [at, isNew] =
                byName_.try_emplace(textIn(record, "name"), Namesakes{.first = &record});
            if (!isNew)
                at->second.others.push_back(&record);
        });
    }

    // Whether there is a record to send of this name.
    [[nodiscard]] bool hasName(std::string_view key, std::string_view name) const
    {
        return key == scope_.key && byName_.contains(name);
    }

    void compare(std::string_view key, const gps::Dictionary& onDevice)
    {
        if (key != scope_.key || !scope_.contains(onDevice))
            return;
        const auto found = byName_.find(textIn(onDevice, "name"));
        if (found == byName_.end())
            return;
        auto& records = found->second;
        const auto isSame = [&](const gps::Dictionary* record) {
            return scope_.areSame(comparison_, *record, onDevice);
        };
        records.areOnDevice = isAnyOnDevice_ = true;
        records.haveChanged = records.haveChanged || !isSame(records.first) ||
                              !std::all_of(records.others.begin(), records.others.end(), isSame);
    }

    // Whether the device holds any name of the records to send.
    [[nodiscard]] bool isAnyOnDevice() const noexcept { return isAnyOnDevice_; }

    // Whether the device holds a record to send, and all others of its name.
    [[nodiscard]] bool isPresent(const gps::Dictionary& record) const
    {
        if (!scope_.contains(record))
            return false;
        const auto& records = byName_.find(textIn(record, "name"))->second;
        return records.areOnDevice && !records.haveChanged;
    }

private:
    // Records of one name. Nearly always there is only one.
    struct Namesakes {
        const gps::Dictionary* first;
        std::vector<const gps::Dictionary*> others{};
        bool areOnDevice = false; // whether the device holds the name
        bool haveChanged = false; // whether it holds something else under the name
    };

    const Scope& scope_;
    RecordComparison& comparison_;
    std::unordered_map<std::string_view, Namesakes> byName_;
    bool isAnyOnDevice_ = false;
};

// Removes the records under a key for which `isRemoved` returns true, and the key with the last of
// them. Calls it for every record before it removes the first.
template <typename Predicate>
void removeRecords(gps::Dictionary& data, std::string_view key, const Predicate& isRemoved)
{
    const auto* const records = std::as_const(data).findArray(key);
    if (records == nullptr)
        return;
    std::vector<bool> removed;
    removed.reserve(records->size());
    for (const auto& value : *records) {
        const auto* const record = value.as<gps::Dictionary>();
        removed.push_back(record != nullptr && isRemoved(*record));
    }
    if (std::find(removed.begin(), removed.end(), true) == removed.end())
        return;
    auto& changed = *data.findArray(key);
    auto isNextRemoved = removed.begin();
    std::erase_if(changed, [&](const gps::Value&) { return *isNextRemoved++; });
    if (changed.empty())
        data.remove(key);
}

} // namespace

RecordCounts removePresentRecords(gps::Dictionary& data, const ChosenRecordSource& onDevice,
                                  const gps::GPSFileDevice& device)
{
    const auto before = countRecords(data);
    RecordComparison comparison{device};
    PresentRecords waypoints{kWaypoints, data, comparison};
    PresentRecords geocaches{kGeocaches, data, comparison};
    PresentRecords routes{kRoutes, data, comparison};
    const std::array scopes{&waypoints, &geocaches, &routes};
    onDevice(
        [&](std::string_view key, std::string_view name) {
            return std::any_of(scopes.begin(), scopes.end(), [&](const PresentRecords* scope) {
                return scope->hasName(key, name);
            });
        },
        [&](std::string_view key, const gps::Dictionary& record) {
            for (auto* const scope : scopes)
                scope->compare(key, record);
        });
    if (std::none_of(scopes.begin(), scopes.end(),
                     [](const PresentRecords* scope) { return scope->isAnyOnDevice(); }))
        return {};
    removeRecords(data, kWaypoints.key, [&](const gps::Dictionary& record) {
        return waypoints.isPresent(record) || geocaches.isPresent(record);
    });
    removeRecords(data, kRoutes.key,
                  [&](const gps::Dictionary& record) { return routes.isPresent(record); });
    const auto rest = countRecords(data);
    return {.waypoints = before.waypoints - rest.waypoints,
            .geocaches = before.geocaches - rest.geocaches,
            .routes = before.routes - rest.routes,
            .routePoints = before.routePoints - rest.routePoints};
}

} // namespace host
