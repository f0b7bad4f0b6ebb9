// SPDX-License-Identifier: MIT
// Indexes the records to send, which are in memory anyway, and visits the device's records once.

#include "host/transfer/PresentRecords.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/transfer/RecordScope.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host {
namespace {

// The records to send of one scope, by name, and what the device holds under each name.
class PresentRecords {
public:
    PresentRecords(const RecordScope& scope, const gps::Dictionary& data,
                   RecordComparison& comparison)
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
        records.areOnDevice = true;
        records.haveChanged = records.haveChanged || !isSame(records.first) ||
                              !std::all_of(records.others.begin(), records.others.end(), isSame);
    }

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

    const RecordScope& scope_;
    RecordComparison& comparison_;
    std::unordered_map<std::string_view, Namesakes> byName_;
};

} // namespace

RecordCounts removePresentRecords(gps::Dictionary& data, const ChosenRecordSource& onDevice,
                                  const gps::GPSFileDevice& device, bool& isAnyNameOnDevice)
{
    isAnyNameOnDevice = false;
    const auto before = countRecords(data);
    RecordComparison comparison{device};
    PresentRecords waypoints{kWaypointScope, data, comparison};
    PresentRecords geocaches{kGeocacheScope, data, comparison};
    PresentRecords routes{kRouteScope, data, comparison};
    const std::array scopes{&waypoints, &geocaches, &routes};
    onDevice(
        [&](std::string_view key, std::string_view name) {
            return std::any_of(scopes.begin(), scopes.end(), [&](const PresentRecords* scope) {
                return scope->hasName(key, name);
            });
        },
        [&](std::string_view key, const gps::Dictionary& record) {
            isAnyNameOnDevice = true;
            for (auto* const scope : scopes)
                scope->compare(key, record);
        });
    if (!isAnyNameOnDevice)
        return {};
    removeRecords(data, kWaypointScope.key, [&](const gps::Dictionary& record) {
        return waypoints.isPresent(record) || geocaches.isPresent(record);
    });
    removeRecords(data, kRouteScope.key,
                  [&](const gps::Dictionary& record) { return routes.isPresent(record); });
    return removedSince(before, data);
}

} // namespace host
