// SPDX-License-Identifier: MIT
// ProfileLine: a value along a track, reduced to the columns of a picture. A line of three million
// points is drawn as quickly as one of a thousand. [any]

#pragma once

#include "host/points/TrackProfile.h"

#include <cstddef>
#include <span>
#include <vector>

namespace host {

enum class ProfileValue { kElevation, kSpeed };

/// The values of neighbouring points that are in one column.
struct ProfilePiece {
    std::size_t column = 0;
    float first = 0;
    float lowest = 0;
    float highest = 0;
    float last = 0;
    bool isJoined = false; ///< the line leads here from the piece before
};

struct ProfileLine {
    std::vector<ProfilePiece> pieces{}; ///< along the axis; a few in a column that has gaps
    std::size_t columns = 0;            ///< of the whole axis
    std::size_t points = 0;             ///< those with a value
    double lowest = kUnknownValue;
    double highest = kUnknownValue;

    /// Fewer than two values are not a line.
    [[nodiscard]] bool canBeDrawn() const noexcept { return points >= 2; }
};

/// @param positions  of the points on the axis, from 0, never falling
/// @param columns    of the axis; above 0
/// Elevations are interrupted where they are missing, and both between segments. A speed is known
/// at timed points only, and the line connects those.
[[nodiscard]] ProfileLine profileLine(const TrackProfile& profile, ProfileValue value,
                                      std::span<const double> positions, std::size_t columns);

/// The same line in fewer columns, or in as many. Quick enough for a frame.
[[nodiscard]] ProfileLine narrowed(const ProfileLine& line, std::size_t columns);

/// The scale of a plot: what is at its lower and its upper edge.
struct ValueRange {
    double low = 0;
    double high = 1;
};

/// A range with the values of a line, and some room above them. A walk on level ground looks level,
/// and speeds begin at 0. Precondition: the line can be drawn.
[[nodiscard]] ValueRange rangeOf(const ProfileLine& line, ProfileValue value) noexcept;

} // namespace host
