// SPDX-License-Identifier: MIT
// The sentence that it makes is a note on the output: shown by the host, and stored in the page.

#include "host/points/GlobeFilter.h"

#include "host/points/Points.h"

#include <fmt/format.h>

namespace host {

bool GlobeFilter::passes(const gps::GPSPoint& point) noexcept
{
    const bool passes = isOnGlobe(point);
    skipped_ += passes ? 0 : 1;
    return passes;
}

std::string GlobeFilter::remark() const
{
    if (skipped_ == 0)
        return {};
    return fmt::format("{} without valid coordinates {} left out",
                       skipped_ == 1 ? "1 point" : fmt::format("{} points", skipped_),
                       skipped_ == 1 ? "was" : "were");
}

} // namespace host
