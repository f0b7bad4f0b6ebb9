// SPDX-License-Identifier: MIT
// Events of records, made from and turned into short forms.

#pragma once

#include "host/operations/Event.h"

#include <cstdint>
#include <string>
#include <utility>

namespace support {

inline host::Event eventOf(host::EventKind kind, gps::Dictionary record,
                           const gps::GPSPoint& point = {})
{
    host::Event event;
    event.kind = kind;
    event.record = std::move(record);
    event.point = point;
    return event;
}

inline host::Event track(const char* name)
{
    return eventOf(host::EventKind::kNewTrack, {{"name", name}});
}
inline host::Event fix(std::int64_t time, double latitude = 46, const char* trackName = "")
{
    return eventOf(host::EventKind::kTrackPoint, {{"trackName", trackName}},
                   {latitude, 7, 0, time, 0});
}
inline host::Event segment()
{
    return eventOf(host::EventKind::kNewSegment, {});
}
inline host::Event route(const char* name)
{
    return eventOf(host::EventKind::kNewRoute, {{"name", name}});
}
inline host::Event waypoint(const char* name, double latitude = 46)
{
    return eventOf(host::EventKind::kWayPoint, {{"name", name}}, {latitude, 7, 0, 0, 0});
}
inline host::Event cache(const char* name)
{
    return eventOf(host::EventKind::kWayPoint, {{"name", name}, {"symbol", "Geocache"}},
                   {46, 7, 0, 0, 0});
}
inline host::Event endOfTransfer()
{
    return eventOf(host::EventKind::kEndTransfer, {});
}

/// An event in short: "T:name", "f:time", "R:name", "w:name", "|" for a new segment, and
/// "-" for any other.
inline std::string shortText(const host::Event& event)
{
    const auto text = [&](const char* key) {
        const auto* const found = event.record.findString(key);
        return found != nullptr ? *found : std::string{};
    };
    switch (event.kind) {
    case host::EventKind::kNewTrack:
        return "T:" + text("name");
    case host::EventKind::kTrackPoint:
        return "f:" + std::to_string(event.point.time) + text("trackName");
    case host::EventKind::kNewSegment:
        return "|";
    case host::EventKind::kNewRoute:
        return "R:" + text("name");
    case host::EventKind::kWayPoint:
        return "w:" + text("name");
    default:
        return "-";
    }
}

} // namespace support
