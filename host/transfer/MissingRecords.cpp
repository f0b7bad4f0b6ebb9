// SPDX-License-Identifier: MIT
// A driver drops a record that it cannot write, and merges records with the same name, without
// reporting either. So the records are compared with what the planned files decode to. The names of
// route points cannot be compared, since a driver numbers them. Of track points, of which there may
// be millions, only the positions are.

#include "host/transfer/MissingRecords.h"

#include "host/points/DevicePositionSet.h"
#include "host/transfer/SentRecords.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace host {
namespace {

// Visits each element of a list. One that is not a record cannot be written, and counts as an empty
// record here, so that it is reported as missing.
// @param visit  gets the record and its index
template <typename Visitor>
void forEachElement(const gps::Dictionary& data, std::string_view key, const Visitor& visit)
{
    const auto* const elements = data.findArray(key);
    if (elements == nullptr)
        return;
    const gps::Dictionary empty;
    std::size_t index = 0;
    for (const auto& element : *elements) {
        const auto* const record = element.as<gps::Dictionary>();
        visit(record != nullptr ? *record : empty, index++);
    }
}

std::optional<std::string> nameOf(const gps::Dictionary& record)
{
    const auto* const name = record.findString("name");
    return name != nullptr ? std::optional{*name} : std::nullopt;
}

// Whether a file cannot be written, so that its records are not sent.
bool hasObstacle(const gps::PlannedFile& file)
{
    return file.action == gps::PlannedFile::Action::kSkip && file.error;
}

bool isWritten(const gps::PlannedFile& file) noexcept
{
    return file.action != gps::PlannedFile::Action::kSkip;
}

// Adds the points of a route or track that are not among the positions.
// @param index  of the line
void addMissingPoints(const gps::Dictionary& line, std::string_view kind, std::size_t index,
                      DevicePositionSet& positions, std::vector<MissingRecord>& missing)
{
    forEachElement(line, "points", [&](const gps::Dictionary& record, std::size_t /*index*/) {
        const auto* const point = gps::findPoint(record);
        if (point == nullptr || !positions.take(*point))
            missing.push_back({kind, nameOf(record), index});
    });
}

// Looks for waypoints, geocaches and routes in the planned files.
class MissingSearch {
public:
    MissingSearch(const gps::Dictionary& data, const gps::SendPlan& plan,
                  const gps::GPSFileDevice& device)
        : sent_(data, plan, device)
    {
        if (const auto* const points = data.findArray(kWaypointScope.key))
            firstRoute_ = points->size();
        if (isAllFound()) // there are none
            return;
        visitFiles(plan, device, [this](const auto& file, auto key, const auto& planned) {
            if (auto* const record = sent_.next(file.kind, key, planned))
                compare(*record, planned);
        });
        if (isAllFound())
            return;
        visitFiles(plan, device, [this](const auto& file, auto key, const auto& planned) {
            sent_.forEachNamesake(file.kind, key, planned,
                                  [&](SentRecords::Record& record) { compare(record, planned); });
        });
    }

    [[nodiscard]] std::vector<MissingRecord> takeMissing()
    {
        std::vector<MissingRecord> missing;
        std::size_t place = 0;
        for (auto& record : sent_.all()) {
            const auto index = place++ - (record.scope == &kRouteScope ? firstRoute_ : 0);
            if (record.isMarked)
                continue;
            const auto points = missingPoints_.find(&record);
            if (points == missingPoints_.end() || points->second.empty()) {
                missing.push_back({record.scope->kind, nameOf(record), index});
                continue;
            }
            for (auto& point : points->second) {
                point.index = index;
                missing.push_back(std::move(point));
            }
        }
        return missing;
    }

private:
    template <typename Visitor> static void
    visitFiles(const gps::SendPlan& plan, const gps::GPSFileDevice& device, const Visitor& visit)
    {
        for (const auto& file : plan.files) {
            if (isWritten(file) && file.kind != "tracks")
                device.visitRecordsIn(file.path, file.content,
                                      [&](std::string_view key, const gps::Dictionary& planned) {
                                          visit(file, key, planned);
                                      });
        }
    }

    [[nodiscard]] bool isAllFound()
    {
        const auto& all = sent_.all();
        return std::all_of(all.begin(), all.end(),
                           [](const SentRecords::Record& record) { return record.isMarked; });
    }

    void compare(SentRecords::Record& record, const gps::Dictionary& planned)
    {
        if (record.scope == &kRouteScope)
            compareRoutes(record, planned);
        else
            record.isMarked = record.isMarked || sent_.areSame(record, planned);
    }

    void compareRoutes(SentRecords::Record& route, const gps::Dictionary& planned)
    {
        if (route.isMarked || route.record == nullptr)
            return;
        route.isMarked = sent_.areSameButForPointNames(*route.record, planned);
        if (!route.isMarked)
            missingPoints_[&route] = missingPoints(*route.record, planned);
    }

    // The points of a sent route that a planned one has nowhere.
    static std::vector<MissingRecord> missingPoints(const gps::Dictionary& sent,
                                                    const gps::Dictionary& planned)
    {
        DevicePositionSet there;
        forEachElement(planned, "points", [&](const gps::Dictionary& record, std::size_t) {
            if (const auto* const point = gps::findPoint(record))
                there.add(*point);
        });
        std::vector<MissingRecord> missing;
        addMissingPoints(sent, "route point", 0, there, missing);
        return missing;
    }

    static std::optional<std::string> nameOf(const SentRecords::Record& record)
    {
        return record.record != nullptr ? host::nameOf(*record.record) : std::nullopt;
    }

    SentRecords sent_;
    std::size_t firstRoute_ = 0; // behind the waypoints and geocaches
    std::unordered_map<const SentRecords::Record*, std::vector<MissingRecord>> missingPoints_;
};

void addMissingTrackPoints(const gps::Dictionary& data, const gps::SendPlan& plan,
                           const gps::GPSFileDevice& device, std::vector<MissingRecord>& missing)
{
    if (data.findArray("track") == nullptr)
        return;
    DevicePositionSet positions;
    for (const auto& file : plan.files) {
        if (isWritten(file) && (file.kind == "tracks" || file.kind.empty()))
            device.visitPointsIn(file.path, file.content,
                                 [&](std::string_view key, const gps::GPSPoint& point) {
                                     if (key == "track")
                                         positions.add(point);
                                 });
    }
    forEachElement(data, "track", [&](const gps::Dictionary& track, std::size_t index) {
        addMissingPoints(track, "track point", index, positions, missing);
    });
}

} // namespace

RecordCounts countMissing(const std::vector<MissingRecord>& missing, const gps::Dictionary& data)
{
    RecordCounts counts;
    for (const auto& lost : missing) {
        const auto* const list = lost.isPoint() ? nullptr : data.findArray(lost.listKey());
        if (list == nullptr)
            continue;
        if (const auto* const record = (*list)[lost.index].as<gps::Dictionary>())
            countRecord(lost.listKey(), *record, counts);
    }
    return counts;
}

std::vector<MissingRecord> missingRecords(const gps::Dictionary& data, const gps::SendPlan& plan,
                                          const gps::GPSFileDevice& device)
{
    auto missing = MissingSearch{data, plan, device}.takeMissing();
    addMissingTrackPoints(data, plan, device, missing);
    return missing;
}

std::vector<MissingRecord> unplannedTracks(const gps::Dictionary& data, const gps::SendPlan& plan)
{
    const auto& files = plan.files;
    if (std::any_of(files.begin(), files.end(), hasObstacle))
        return {};
    auto planned = std::count_if(files.begin(), files.end(),
                                 [](const auto& file) { return file.kind == "tracks"; });
    std::vector<MissingRecord> missing;
    forEachElement(data, "track", [&](const gps::Dictionary& track, std::size_t index) {
        if (planned-- <= 0)
            missing.push_back({"track", nameOf(track), index});
    });
    return missing;
}

std::vector<MissingRecord> unplannedRecords(const gps::Dictionary& data, const gps::SendPlan& plan,
                                            const gps::GPSFileDevice& device)
{
    if (std::any_of(plan.files.begin(), plan.files.end(), hasObstacle))
        return {};
    auto missing = missingRecords(data, plan, device);
    auto tracks = unplannedTracks(data, plan);
    if (!tracks.empty())
        std::erase_if(missing, [](const auto& record) { return record.kind == "track point"; });
    missing.insert(missing.end(), std::make_move_iterator(tracks.begin()),
                   std::make_move_iterator(tracks.end()));
    return missing;
}

} // namespace host
