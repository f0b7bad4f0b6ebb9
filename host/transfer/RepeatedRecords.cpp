// SPDX-License-Identifier: MIT
// Names that were fitted are the same only for records that are the same, so a record is compared
// with the first of its name alone. Tracks may share a name and differ.

#include "host/transfer/RepeatedRecords.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/points/DevicePosition.h"
#include "host/transfer/RecordScope.h"
#include "host/transfer/StoredTrack.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace host {
namespace {

constexpr const char* kRepeatableTracks = "track";

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

// The tracks that came before. Only those with the same name, number of points and start are
// compared point by point.
class EarlierTracks {
public:
    explicit EarlierTracks(const RepeatVisitor& visit) : visit_(visit) {}

    [[nodiscard]] bool haveSame(const gps::Dictionary& record)
    {
        const auto* const points = record.findArray("points");
        if (points == nullptr || points->empty())
            return false;
        auto& alike = tracks_[{textIn(record, "name"), points->size(), startOf(*points)}];
        const auto* const first = alike.empty() ? nullptr : sameAmong(alike, storedTrackOf(record));
        if (first == nullptr)
            alike.push_back(&record);
        else if (visit_)
            visit_(kRepeatableTracks, record, *first);
        return first != nullptr;
    }

private:
    using Key = std::tuple<std::string_view, std::size_t, std::int64_t>;
    using Tracks = std::vector<const gps::Dictionary*>;

    static const gps::Dictionary* sameAmong(const Tracks& others, const StoredTrack& track)
    {
        const auto found =
            std::find_if(others.begin(), others.end(), [&track](const gps::Dictionary* other) {
                return !track.empty() && areSameTracks(track, storedTrackOf(*other));
            });
        return found != others.end() ? *found : nullptr;
    }

    static std::int64_t startOf(const gps::Array& points)
    {
        const auto* const record = points.front().as<gps::Dictionary>();
        const auto* const point = record != nullptr ? gps::findPoint(*record) : nullptr;
        return point != nullptr ? deviceTime(*point) : 0;
    }

    const RepeatVisitor& visit_;
    std::map<Key, Tracks> tracks_;
};

// Whether two records may have the same name. Takes much less time than a table of names, and there
// are hardly ever any.
bool mayBeRepeated(const gps::Dictionary& data)
{
    std::vector<std::size_t> hashes;
    for (const char* const key : {kWaypointScope.key, kRouteScope.key, kRepeatableTracks}) {
        hashes.clear();
        forEachRecord(data, key, [&](const gps::Dictionary& record) {
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
    EarlierTracks tracks{visit};
    removeRecords(data, kRepeatableTracks,
                  [&](const gps::Dictionary& record) { return tracks.haveSame(record); });
    return removedSince(before, data);
}

} // namespace host
