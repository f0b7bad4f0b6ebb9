// SPDX-License-Identifier: MIT
// GlobeFilter: lets the map writers leave out points without valid coordinates, and counts them.
// One thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <cstddef>
#include <string>

namespace host {

class GlobeFilter {
public:
    /// Whether a point has valid coordinates. Counts it if not.
    [[nodiscard]] bool passes(const gps::GPSPoint& point) noexcept;

    /// One sentence with the number of points that did not pass; empty if all did.
    [[nodiscard]] std::string remark() const;

private:
    std::size_t skipped_ = 0;
};

} // namespace host
