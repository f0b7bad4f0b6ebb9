// SPDX-License-Identifier: MIT
// DevicePositionSet: answers whether a point is among many others, by DevicePosition's rule. Used
// before a send, to recognise what the receiver holds, and after it, to check what arrived. One
// thread at a time.

#pragma once

#include "host/points/DevicePosition.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace host {

class DevicePositionSet {
public:
    /// Adds a point. One without valid coordinates is ignored.
    /// Precondition: contains() was not called yet.
    void add(const gps::GPSPoint& point);

    /// Whether a point that was added matches this one. Takes the least time for points in the
    /// order in which they were added, which is how devices store what is sent; others may be
    /// between them. Otherwise takes logarithmic time.
    [[nodiscard]] bool contains(const gps::GPSPoint& point);

private:
    [[nodiscard]] bool follows(const DevicePosition& position) noexcept;
    [[nodiscard]] bool isAnywhere(const DevicePosition& position);

    std::vector<DevicePosition> positions_; // in the order of the calls
    std::size_t next_ = 0;                  // all before it were passed by look-ups in order
    std::vector<std::int64_t> sortedKeys_;  // empty until a point is not in order
};

} // namespace host
