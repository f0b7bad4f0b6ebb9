// SPDX-License-Identifier: MIT
// Formats know the stream of events only, so records go through one once more.

#include "host/records/Export.h"

#include "host/files/OutputFile.h"

#include <cstddef>

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

std::optional<gps::Error> exportRecords(const RecordSet& set, const TickedRecords& ticked,
                                        const std::string& path, const Format& format,
                                        const RecordOrigin& origin, std::string& remark)
{
    OutputFile file{path};
    if (auto failure = file.open())
        return failure;
    const auto writer = format.make(file.output(), file.folder(), origin);
    replay(set, ticked, *writer);
    if (auto failure = writer->close())
        return failure;
    remark = writer->remark();
    return file.commit();
}

} // namespace host
