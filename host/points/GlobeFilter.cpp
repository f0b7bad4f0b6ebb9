// SPDX-License-Identifier: MIT
// The sentence that it makes is a note on the output: shown by the host, and stored in the page.

#include "host/points/GlobeFilter.h"

#include "host/base/Text.h"
#include "host/points/Points.h"

#include <fmt/format.h>

#include <cmath>
#include <string_view>
#include <vector>

namespace host {

bool GlobeFilter::passes(const gps::GPSPoint& point) noexcept
{
    const bool passes = isOnGlobe(point);
    skipped_ += passes ? 0 : 1;
    unstated_ += passes && std::abs(point.altitude) > kMostElevation ? 1U : 0U; // not for NaN
    return passes;
}

std::string GlobeFilter::remark() const
{
    const auto text = [](std::size_t count, std::string_view one, std::string_view what) {
        return fmt::format("{} {}{} {} {} left out", count, one, count == 1 ? "" : "s", what,
                           count == 1 ? "was" : "were");
    };
    std::vector<std::string> parts;
    if (skipped_ > 0)
        parts.push_back(text(skipped_, "point", "without valid coordinates"));
    if (unstated_ > 0)
        parts.push_back(text(unstated_, "elevation", "of more than 100,000 km"));
    return joined(parts, ", ");
}

} // namespace host
