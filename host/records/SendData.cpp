// SPDX-License-Identifier: MIT
// The inverse of an import, which reports the records of a file as a driver would.

#include "host/records/SendData.h"

#include "host/base/RecordText.h"
#include "host/fitting/RecordList.h"
#include "host/fitting/TrackSegments.h"
#include "host/formats/GpxRecords.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>

namespace host {
namespace {

using Fate = PlannedRecord::Fate;

// No driver knows this key, and no device gets it.
constexpr char kIndexKey[] = "indexOfRecord";

enum class Numbering { kNone, kByIndex };

void appendData(const KeptPoint& point, gps::Dictionary head, gps::Array& records)
{
    head.set(gps::kPointKey, point.point);
    records.emplace_back(std::move(head));
}

void appendData(const KeptRoute& route, gps::Dictionary head, gps::Array& records)
{
    gps::Array points;
    for (const auto& point : route.points)
        appendData(point, point.record, points);
    head.set("points", std::move(points));
    records.emplace_back(std::move(head));
}

// A receiver stores a track as it was, so gaps that the host found do not divide it.
void appendData(const KeptTrack& track, const gps::Dictionary& head, gps::Array& records)
{
    std::vector<std::size_t> begins;
    std::set_difference(track.segments.begin(), track.segments.end(), track.gaps.begin(),
                        track.gaps.end(), std::back_inserter(begins));
    std::vector<gps::Array> segments(1);
    auto next = begins.begin();
    for (std::size_t i = 0; i < track.points.size(); ++i) {
        if (next != begins.end() && *next == i) {
            segments.emplace_back();
            ++next;
        }
        segments.back().emplace_back(trackPointRecord(track.points[i]));
    }
    appendTrack(records, head, std::move(segments));
}

template <typename Record> void addKind(const char* key, const std::vector<Record>& records,
                                        const std::vector<bool>& isTicked, Numbering numbering,
                                        gps::Dictionary& data)
{
    gps::Array array;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (!isTicked[i])
            continue;
        auto head = records[i].record;
        if (numbering == Numbering::kByIndex)
            head.set(kIndexKey, static_cast<std::int32_t>(i));
        appendData(records[i], std::move(head), array);
    }
    appendRecords(data, key, array);
}

gps::Dictionary dataOf(const RecordSet& set, const TickedRecords& ticked, Numbering numbering)
{
    gps::Dictionary data;
    addKind("waypoint", set.points, ticked.points, numbering, data);
    addKind("route", set.routes, ticked.routes, numbering, data);
    addKind("track", set.tracks, ticked.tracks, numbering, data);
    return data;
}

bool isEmpty(const KeptPoint& /*point*/)
{
    return false;
}

template <typename Record> bool isEmpty(const Record& record)
{
    return record.points.empty();
}

std::vector<std::string> changedTexts(const gps::Dictionary& before, const gps::Dictionary& after)
{
    std::vector<std::string> changed;
    for (const auto& [key, value] : before) {
        if (value.template as<std::string>() != nullptr &&
            textIn(after, key) != textIn(before, key))
            changed.emplace_back(key);
    }
    return changed;
}

// The index in the set, of a record in the data; nullopt for what the user has not ticked.
std::optional<std::size_t> indexIn(const gps::Dictionary& record)
{
    const auto* const index = record.find(kIndexKey);
    return index != nullptr ? std::optional{static_cast<std::size_t>(index->int32Reading())}
                            : std::nullopt;
}

// A track of several segments is in the data more than once.
void markMissing(const char* key, const gps::Dictionary& data,
                 const std::vector<MissingRecord>& missing, std::vector<PlannedRecord>& planned)
{
    const auto* const list = data.findArray(key);
    if (list == nullptr)
        return;
    std::vector<bool> isMissing(list->size());
    for (const auto& lost : missing) {
        if (lost.listKey() != key)
            continue;
        const auto* const record = (*list)[lost.index].as<gps::Dictionary>();
        const auto i = record != nullptr ? indexIn(*record) : std::nullopt;
        isMissing[lost.index] = !lost.isPoint();
        if (i)
            planned[*i].fate = lost.isPoint() ? Fate::kPartial : Fate::kMissing;
    }
    for (std::size_t i = 0; i < list->size(); ++i) {
        const auto* const record = (*list)[i].as<gps::Dictionary>();
        const auto of = record != nullptr && !isMissing[i] ? indexIn(*record) : std::nullopt;
        if (of && planned[*of].fate == Fate::kMissing)
            planned[*of].fate = Fate::kPartial;
    }
}

// A record that is in the plan no longer was left out of it.
template <typename Record> std::vector<PlannedRecord>
plannedKind(const char* key, const std::vector<Record>& records, const std::vector<bool>& isTicked,
            const gps::Dictionary& data, const std::vector<RepeatedIndices::Repeat>& repeated,
            const std::vector<MissingRecord>& missing)
{
    std::vector<PlannedRecord> planned(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (isTicked[i])
            planned[i].fate = isEmpty(records[i]) ? Fate::kEmpty : Fate::kPresent;
    }
    forEachRecord(data, key, [&](const gps::Dictionary& record) {
        const auto i = indexIn(record);
        if (!i)
            return;
        planned[*i].fate = Fate::kSent;
        planned[*i].name = textIn(record, "name");
        planned[*i].changedTexts = changedTexts(records[*i].record, record);
    });
    markMissing(key, data, missing, planned);
    // A track of which another segment is sent is sent.
    for (const auto& [index, first] : repeated) {
        const auto fate = planned[first].fate;
        if (planned[index].fate == Fate::kPresent)
            planned[index].fate = fate == Fate::kSent ? Fate::kRepeated : fate;
    }
    return planned;
}

} // namespace

gps::Dictionary sendData(const RecordSet& set, const TickedRecords& ticked)
{
    return dataOf(set, ticked, Numbering::kNone);
}

gps::Dictionary numberedSendData(const RecordSet& set, const TickedRecords& ticked)
{
    return dataOf(set, ticked, Numbering::kByIndex);
}

std::size_t RepeatedIndices::kindOf(std::string_view key) noexcept
{
    return key == "waypoint" ? 0 : key == "route" ? 1 : 2;
}

void RepeatedIndices::add(std::string_view key, const gps::Dictionary& record,
                          const gps::Dictionary& first)
{
    const auto index = indexIn(record);
    const auto firstIndex = indexIn(first);
    if (index && firstIndex)
        repeats_[kindOf(key)].push_back({*index, *firstIndex});
}

const std::vector<RepeatedIndices::Repeat>& RepeatedIndices::of(std::string_view key) const
{
    return repeats_[kindOf(key)];
}

PlannedRecords plannedRecords(const RecordSet& set, const TickedRecords& ticked,
                              const gps::Dictionary& data, const RepeatedIndices& repeated,
                              const std::vector<MissingRecord>& missing)
{
    return {
        plannedKind("waypoint", set.points, ticked.points, data, repeated.of("waypoint"), missing),
        plannedKind("route", set.routes, ticked.routes, data, repeated.of("route"), missing),
        plannedKind("track", set.tracks, ticked.tracks, data, repeated.of("track"), missing)};
}

} // namespace host
