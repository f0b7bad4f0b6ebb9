// SPDX-License-Identifier: MIT

#include "host/points/GlobeFilter.h"

#include "host/points/Points.h"

namespace host {

bool GlobeFilter::passes(const gps::GPSPoint& point) noexcept
{
    const bool passes = isOnGlobe(point);
    leftOut_ += passes ? 0 : 1;
    return passes;
}

std::string GlobeFilter::remark() const
{
    if (leftOut_ == 0)
        return {};
    return std::to_string(leftOut_) + (leftOut_ == 1 ? " point was" : " points were") +
           " left out: no place on the globe";
}

} // namespace host
