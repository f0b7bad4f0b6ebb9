// SPDX-License-Identifier: MIT
// StoredTrack: what a device stores of a track's points, to recognise tracks that are the same to
// the device. Stateless. [any]

#pragma once

#include <gps/GPSPoint.h>
#include <gps/Value.h>

#include <cstdint>
#include <vector>

namespace host {

/// A point of a track as a device stores it.
struct StoredPoint {
    gps::GPSPoint point;
    std::int64_t time = 0; ///< 0 if there is no timestamp

    /// Coordinates and altitude are compared after the device's rounding.
    [[nodiscard]] bool isSame(const StoredPoint& other) const noexcept;
};

/// Without the points that no device can store.
using StoredTrack = std::vector<StoredPoint>;

void appendStored(StoredTrack& track, const gps::GPSPoint& point);

/// The "points" of a record.
[[nodiscard]] StoredTrack storedTrackOf(const gps::Dictionary& record);

[[nodiscard]] bool areSameTracks(const StoredTrack& a, const StoredTrack& b);

} // namespace host
