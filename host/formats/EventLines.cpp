// SPDX-License-Identifier: MIT
// Builds each line in a buffer that is used again, and lines of track points, which are nearly all,
// in that of the output.

#include "host/formats/EventLines.h"

#include "host/base/JsonText.h"
#include "host/base/Text.h"

#include <gps/NumberText.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace host {
namespace {

// Scripts match these names: renaming an enumerator must not change them.
std::string_view eventName(EventKind kind)
{
    switch (kind) {
    case EventKind::kStateChange:
        return "gpsStateChange";
    case EventKind::kStartTransfer:
        return "startTransfer";
    case EventKind::kEndTransfer:
        return "endTransfer";
    case EventKind::kNewTrack:
        return "newTrack";
    case EventKind::kTrackPoint:
        return "trackPoint";
    case EventKind::kNewSegment:
        return "newSegment";
    case EventKind::kWayPoint:
        return "wayPoint";
    case EventKind::kNewRoute:
        return "newRoute";
    case EventKind::kStartSending:
        return "startSending";
    case EventKind::kEndSending:
        return "endSending";
    case EventKind::kError:
        return "error";
    }
    return {};
}

void appendKind(std::string& line, gps::TransferKind kind)
{
    line += R"(,"kind":)";
    gps::appendInteger(line, static_cast<std::int32_t>(kind));
}

void appendPoint(std::string& line, const Event& event)
{
    line += R"(,"point":)";
    appendJson(line, event.point);
    line += R"(,"extra":)";
    appendJson(line, event.record);
}

void appendRecord(std::string& line, std::string_view key, const gps::Dictionary& record)
{
    line += ',';
    appendJson(line, key);
    line += ':';
    appendJson(line, record);
}

void appendArguments(std::string& line, const Event& event)
{
    switch (event.kind) {
    case EventKind::kStateChange:
        line += R"(,"state":)";
        gps::appendInteger(line, event.state);
        break;
    case EventKind::kStartTransfer:
    case EventKind::kEndTransfer:
    case EventKind::kEndSending:
        appendKind(line, event.transfer);
        break;
    case EventKind::kNewTrack:
        appendRecord(line, "track", event.record);
        break;
    case EventKind::kNewRoute:
        appendRecord(line, "route", event.record);
        break;
    case EventKind::kTrackPoint:
    case EventKind::kWayPoint:
        appendPoint(line, event);
        break;
    case EventKind::kNewSegment:
        break;
    case EventKind::kStartSending:
        line += R"(,"label":)";
        appendJson(line, event.label);
        appendKind(line, event.transfer);
        break;
    case EventKind::kError:
        line += R"(,"error":)";
        appendJson(line, *event.error);
        break;
    }
}

} // namespace

void EventLines::event(const Event& event)
{
    if (event.kind == EventKind::kNewSegment)
        return;
    if (event.kind == EventKind::kTrackPoint && event.record.empty()) {
        trackPoint(event.point);
        return;
    }
    line_ = R"({"event":)";
    appendJson(line_, eventName(event.kind));
    appendArguments(line_, event);
    write();
}

// Goes straight to the output.
void EventLines::trackPoint(const gps::GPSPoint& point)
{
    constexpr std::string_view kTrackPointStart = R"({"event":"trackPoint","point":)";
    constexpr std::string_view kTrackPointEnd = R"(,"extra":{}})"
                                                "\n";
    char* at = output_.room(kTrackPointStart.size() + kMostOfJsonPoint + kTrackPointEnd.size());
    at = putJson(put(at, kTrackPointStart), point);
    output_.setEnd(put(at, kTrackPointEnd));
}

// Written after the last event, even if the operation failed to start, so that scripts can rely on
// one such line for each operation.
void EventLines::result(const std::optional<gps::Error>& error)
{
    line_ = R"({"event":"result","error":)";
    if (error)
        appendJson(line_, *error);
    else
        line_ += "null";
    write();
}

void EventLines::write()
{
    line_ += "}\n";
    output_.write(line_);
}

} // namespace host
