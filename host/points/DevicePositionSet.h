// SPDX-License-Identifier: MIT
// DevicePositionSet: answers whether a point is among many others, by DevicePosition's rule. Used
// before a send, to recognise what the receiver holds, and after it, to check what arrived. One
// thread at a time.

#pragma once

#include "host/points/DevicePosition.h"

#include <cstdint>
#include <unordered_set>

namespace host {

class DevicePositionSet {
public:
    /// A point without valid coordinates is ignored.
    void add(const gps::GPSPoint& point);

    /// Whether a point that was added matches this one. Takes constant time.
    [[nodiscard]] bool contains(const gps::GPSPoint& point) const;

private:
    std::unordered_set<std::int64_t> keys_;
};

} // namespace host
