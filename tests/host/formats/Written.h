// SPDX-License-Identifier: MIT
// For tests of writers: an output to a temporary file, and short names for the events that are
// written to it.

#pragma once

#include "host/files/Output.h"
#include "host/operations/Event.h"
#include "support/TemporaryFolder.h"

#include <string>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace support {

class Written {
public:
    explicit Written(host::Output::Kind kind = host::Output::Kind::kStream,
                     gps::FileSystem& files = gps::FileSystem::system())
        : file_(::open(folder_.path("out").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)),
          output_(file_, "out", files, kind)
    {}
    ~Written() { ::close(file_); }
    Written(const Written&) = delete;
    Written& operator=(const Written&) = delete;

    [[nodiscard]] host::Output& output() { return output_; }
    [[nodiscard]] std::string folder() const { return folder_.path(); }

    /// Everything written so far.
    [[nodiscard]] std::string text()
    {
        output_.flush();
        return folder_.read("out");
    }

private:
    TemporaryFolder folder_;
    int file_;
    host::Output output_;
};

inline host::Event ofKind(host::EventKind kind)
{
    host::Event event;
    event.kind = kind;
    return event;
}

inline host::Event stateChange(std::int32_t state)
{
    auto event = ofKind(host::EventKind::kStateChange);
    event.state = state;
    return event;
}

inline host::Event transferEvent(host::EventKind kind, gps::TransferKind transfer)
{
    auto event = ofKind(kind);
    event.transfer = transfer;
    return event;
}

inline host::Event wayPoint(const gps::GPSPoint& point, gps::Dictionary record = {})
{
    auto event = ofKind(host::EventKind::kWayPoint);
    event.point = point;
    event.record = std::move(record);
    return event;
}

inline host::Event trackPoint(const gps::GPSPoint& point)
{
    auto event = ofKind(host::EventKind::kTrackPoint);
    event.point = point;
    return event;
}

inline host::Event newTrack(gps::Dictionary track)
{
    auto event = ofKind(host::EventKind::kNewTrack);
    event.record = std::move(track);
    return event;
}

inline host::Event newSegment()
{
    return ofKind(host::EventKind::kNewSegment);
}

inline host::Event newRoute(gps::Dictionary route)
{
    auto event = ofKind(host::EventKind::kNewRoute);
    event.record = std::move(route);
    return event;
}

} // namespace support
