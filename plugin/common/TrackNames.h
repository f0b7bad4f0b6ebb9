// SPDX-License-Identifier: MIT
// TrackNames: where one track ends and the next begins, in a run of track points. Files and serial
// sessions alike are read through it. [worker], or the host thread in an import.

#pragma once

#include <gps/GPSOutputReceiver.h>
#include <gps/Value.h>

#include <string>
#include <string_view>

namespace magellan {

/// Opens a track where a point begins one: at another name than before, and at the first point of
/// all.
class TrackNames {
public:
    /// @param status  gets `newTrack:`; outlives this object
    explicit TrackNames(gps::GPSOutputReceiver& status) : status_(status) {}

    /// @param extras  the next point's: may hold "trackName"
    void pointWith(const gps::Dictionary& extras)
    {
        const auto* name = extras.findString("trackName");
        if (name != nullptr && (!open_ || *name != current_))
            begin(*name);
        else if (!open_)
            begin("Current Track");
    }

private:
    void begin(std::string_view name)
    {
        current_ = name;
        open_ = true;
        status_.newTrack({{"name", name}});
    }

    gps::GPSOutputReceiver& status_;
    std::string current_;
    bool open_ = false;
};

} // namespace magellan
