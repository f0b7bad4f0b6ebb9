// SPDX-License-Identifier: MIT
// GlobeFilter: keeps points that no map can show out of what is written. One thread at a time.

#pragma once

#include <gps/GPSPoint.h>

#include <cstddef>
#include <string>

namespace host {

/// Lets those points pass that lie on the globe, and counts the others.
class GlobeFilter {
public:
    [[nodiscard]] bool passes(const gps::GPSPoint& point) noexcept;

    /// How many did not pass, in one sentence; empty: none.
    [[nodiscard]] std::string remark() const;

private:
    std::size_t leftOut_ = 0;
};

} // namespace host
