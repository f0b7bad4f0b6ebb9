// SPDX-License-Identifier: MIT
// Formats know the stream of events only, so records go through one once more.

#include "host/records/Export.h"

#include "host/files/OutputFile.h"
#include "host/transfer/ProgressTracker.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <utility>

namespace host {
namespace {

Event transferEvent(EventKind kind, gps::TransferKind transfer)
{
    Event event;
    event.kind = kind;
    event.transfer = transfer;
    return event;
}

Event recordEvent(EventKind kind, const gps::Dictionary& record)
{
    Event event;
    event.kind = kind;
    event.record = record;
    return event;
}

Event wayPointEvent(const KeptPoint& point)
{
    auto event = recordEvent(EventKind::kWayPoint, point.record);
    event.point = point.point;
    return event;
}

void replay(const KeptRoute& route, Writer& writer)
{
    writer.event(recordEvent(EventKind::kNewRoute, route.record));
    for (const auto& point : route.points)
        writer.event(wayPointEvent(point));
}

void replay(const KeptTrack& track, Writer& writer)
{
    writer.event(recordEvent(EventKind::kNewTrack, track.record));
    auto segment = track.segments.begin();
    Event event; // one for all points
    event.kind = EventKind::kTrackPoint;
    for (std::size_t i = 0; i < track.points.size(); ++i) {
        if (segment != track.segments.end() && *segment == i) {
            writer.event(newSegmentEvent());
            ++segment;
        }
        event.point = track.points[i];
        writer.event(event);
    }
}

void replay(const KeptPoint& point, Writer& writer)
{
    writer.event(wayPointEvent(point));
}

template <typename Record> void replayKind(gps::TransferKind kind,
                                           const std::vector<Record>& records,
                                           const std::vector<bool>& isTicked, Writer& writer)
{
    writer.event(transferEvent(EventKind::kStartTransfer, kind));
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (isTicked[i])
            replay(records[i], writer);
    }
    writer.event(transferEvent(EventKind::kEndTransfer, kind));
}

// Waypoints, points of routes and points of tracks.
std::size_t countOf(const RecordSet& set, const TickedRecords& ticked)
{
    auto count =
        static_cast<std::size_t>(std::count(ticked.points.begin(), ticked.points.end(), true));
    for (std::size_t i = 0; i < set.routes.size(); ++i)
        count += ticked.routes[i] ? set.routes[i].points.size() : 0;
    for (std::size_t i = 0; i < set.tracks.size(); ++i)
        count += ticked.tracks[i] ? set.tracks[i].points.size() : 0;
    return count;
}

// Passes events on until the user wants no more.
class WatchedWriter final : public Writer {
public:
    WatchedWriter(Writer& writer, const ExportRequest& request, std::size_t total)
        : writer_(writer), request_(request)
    {
        progress_ = {.phase = TransferPhase::kWritingFile,
                     .location = std::filesystem::path{request.path}.filename().string(),
                     .totalRecords = total};
        look();
    }

    void event(const Event& event) override
    {
        constexpr std::size_t kBetweenLooks = 4096; // a look at the clock is slower than an event
        if (isStopped_)
            return;
        writer_.event(event);
        if (event.kind == EventKind::kWayPoint || event.kind == EventKind::kTrackPoint)
            ++progress_.records;
        if (++events_ % kBetweenLooks == 0 && std::chrono::steady_clock::now() >= nextLook_)
            look();
    }

    std::optional<gps::Error> close() override
    {
        look();
        writer_.watchClose([this](std::uint64_t bytes, std::uint64_t totalBytes) {
            return goesOn(bytes, totalBytes);
        });
        auto failure = isStopped_ ? std::nullopt : writer_.close();
        look();
        return failure;
    }

    [[nodiscard]] bool isStopped() const noexcept { return isStopped_; }

private:
    // Whether to go on with the end of the file, of which some part is done.
    bool goesOn(std::uint64_t bytes, std::uint64_t totalBytes)
    {
        const bool isFirst = progress_.phase != TransferPhase::kCompressingFile;
        progress_ = {.phase = TransferPhase::kCompressingFile,
                     .location = progress_.location,
                     .bytes = bytes,
                     .totalBytes = totalBytes};
        if (isFirst || std::chrono::steady_clock::now() >= nextLook_)
            look();
        return !isStopped_;
    }

    void look()
    {
        nextLook_ = std::chrono::steady_clock::now() + ProgressTracker::kInterval;
        if (request_.progress)
            request_.progress(progress_);
        isStopped_ = isStopped_ || (request_.stopRequested && request_.stopRequested());
    }

    Writer& writer_;
    const ExportRequest& request_;
    TransferProgress progress_;
    std::size_t events_ = 0;
    bool isStopped_ = false;
    std::chrono::steady_clock::time_point nextLook_;
};

} // namespace

TickedRecords TickedRecords::all(const RecordSet& set)
{
    return {std::vector<bool>(set.points.size(), true), std::vector<bool>(set.routes.size(), true),
            std::vector<bool>(set.tracks.size(), true)};
}

void replay(const RecordSet& set, const TickedRecords& ticked, Writer& writer)
{
    using enum gps::TransferKind;
    replayKind(kWaypoints, set.points, ticked.points, writer);
    replayKind(kRoutes, set.routes, ticked.routes, writer);
    replayKind(kTracks, set.tracks, ticked.tracks, writer);
}

ExportReport exportRecords(const RecordSet& set, const TickedRecords& ticked,
                           const ExportRequest& request)
{
    OutputFile file{request.path};
    if (auto failure = file.open())
        return {.error = std::move(failure)};
    const auto writer = request.format->make(file.output(), file.folder(), request.origin);
    WatchedWriter watched{*writer, request, countOf(set, ticked)};
    replay(set, ticked, watched);
    if (watched.isStopped())
        return {.isStopped = true};
    if (auto failure = watched.close())
        return {.error = std::move(failure)};
    if (watched.isStopped())
        return {.isStopped = true};
    return {.error = file.commit(), .remark = writer->remark()};
}

} // namespace host
