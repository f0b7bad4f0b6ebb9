// SPDX-License-Identifier: MIT
// TrackAnnouncer: decides where one track ends and the next begins in a run of track points. Used
// by the reader of track files and by serial sessions, one object per file or session. [worker], or
// [host thread] in an import.

#pragma once

#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>

#include <string>
#include <string_view>

namespace magellan {

/// Reports `newTrack:` before the first point and whenever the track name changes. A point without
/// a name belongs to the current track; points before any name belong to "Current Track".
class TrackAnnouncer {
public:
    /// @param status  must outlive this object
    explicit TrackAnnouncer(gps::GPSOutputReceiver& status) : status_(status) {}

    /// Call this before reporting a point.
    /// @param extras  the point's; may hold "trackName"
    void beforePoint(const gps::Dictionary& extras)
    {
        const auto* name = extras.findString("trackName");
        if (name != nullptr && (!started_ || *name != current_))
            begin(*name);
        else if (!started_)
            begin("Current Track");
    }

private:
    void begin(std::string_view name)
    {
        current_ = name;
        started_ = true;
        status_.newTrack({{"name", name}});
    }

    gps::GPSOutputReceiver& status_;
    std::string current_;
    bool started_ = false;
};

} // namespace magellan
