// SPDX-License-Identifier: MIT
// Only the device's tracks that have as many points as one to send are kept in memory.

#include "host/transfer/PresentTracks.h"

#include "host/fitting/RecordList.h"
#include "host/operations/Operation.h"
#include "host/points/Points.h"
#include "host/transfer/StoredTrack.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace host {
namespace {

std::size_t storedPointsIn(const gps::Dictionary& record)
{
    std::size_t count = 0;
    forEachRecord(record, "points", [&](const gps::Dictionary& element) {
        const auto* const point = gps::findPoint(element);
        count += point != nullptr && isOnGlobe(*point) ? 1U : 0U;
    });
    return count;
}

// Collects the device's tracks from the events that report them.
class TrackCollector {
public:
    // @param sizes  the numbers of points of the tracks that are of interest
    explicit TrackCollector(std::set<std::size_t> sizes) : sizes_(std::move(sizes)) {}

    void consume(const EventBatch& batch)
    {
        for (const auto& event : batch) {
            if (event.kind == EventKind::kTrackPoint)
                appendStored(open_, event.point);
            else
                endTrack();
        }
    }

    [[nodiscard]] std::vector<StoredTrack> takeTracks()
    {
        endTrack();
        return std::move(tracks_);
    }

private:
    void endTrack()
    {
        if (!open_.empty() && sizes_.contains(open_.size()))
            tracks_.push_back(open_);
        open_.clear();
    }

    std::set<std::size_t> sizes_;
    StoredTrack open_;
    std::vector<StoredTrack> tracks_;
};

std::vector<StoredTrack> tracksOn(const gps::DeviceSnapshot& device, std::set<std::size_t> sizes)
{
    TrackCollector collector{std::move(sizes)};
    (void)runOperation(
        [&](const gps::GPSPlugInProtocol::Status& status) -> std::optional<gps::Error> {
            device.reportTracks(*status);
            status->gpsStateChange(0);
            return std::nullopt;
        },
        [&](const EventBatch& batch) { collector.consume(batch); });
    return collector.takeTracks();
}

} // namespace

RecordCounts removePresentTracks(gps::Dictionary& data, const gps::DeviceSnapshot& device)
{
    std::set<std::size_t> sizes;
    forEachRecord(std::as_const(data), "track",
                  [&](const gps::Dictionary& track) { sizes.insert(storedPointsIn(track)); });
    RecordCounts removed;
    if (sizes.empty())
        return removed;
    const auto present = tracksOn(device, std::move(sizes));
    if (present.empty())
        return removed;
    auto& tracks = *data.findArray("track");
    std::erase_if(tracks, [&](const gps::Value& element) {
        const auto* const record = element.as<gps::Dictionary>();
        const auto track = record != nullptr ? storedTrackOf(*record) : StoredTrack{};
        const bool isPresent =
            std::any_of(present.begin(), present.end(),
                        [&](const StoredTrack& other) { return areSameTracks(track, other); });
        removed.tracks += isPresent ? 1U : 0U;
        removed.trackPoints += isPresent ? track.size() : 0U;
        return isPresent;
    });
    if (removed.tracks > 0 && tracks.empty())
        data.remove("track");
    return removed;
}

} // namespace host
