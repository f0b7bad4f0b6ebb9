// SPDX-License-Identifier: MIT
// GlobeFilter: lets the map writers leave out points without valid coordinates, and counts them and
// the elevations that they leave out. One thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <cstddef>
#include <string>

namespace host {

class GlobeFilter {
public:
    /// Whether a point has valid coordinates. Counts it if not, and its elevation if it has one
    /// that is not stated: see isElevationStated().
    [[nodiscard]] bool passes(const gps::GPSPoint& point) noexcept;

    /// One sentence with the number of points that did not pass, and of elevations that are not
    /// stated; empty if there are none.
    [[nodiscard]] std::string remark() const;

private:
    std::size_t skipped_ = 0;
    std::size_t unstated_ = 0; // elevations of points that passed
};

} // namespace host
