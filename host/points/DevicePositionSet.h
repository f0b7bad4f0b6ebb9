// SPDX-License-Identifier: MIT
// DevicePositionSet: finds each of many points among many others, by DevicePosition's rule. Used
// after a send, to check what arrived. One thread at a time.

#pragma once

#include "host/points/DevicePosition.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace host {

class DevicePositionSet {
public:
    /// Adds a point. One without valid coordinates is ignored.
    /// Precondition: take() was not called yet.
    void add(const gps::GPSPoint& point);

    /// Takes out a point that matches this one. Takes the least time for points in the order in
    /// which they were added, which is how devices store what is sent; others may be between them.
    /// Otherwise takes logarithmic time.
    /// @return  whether there was one that had not been taken out before
    [[nodiscard]] bool take(const gps::GPSPoint& point);

private:
    struct Place {
        std::int64_t key;
        std::size_t count; // of the points that are still there
    };

    [[nodiscard]] bool takeNext(const DevicePosition& position);
    [[nodiscard]] bool takeAnywhere(const DevicePosition& position);
    void sortRest();

    std::vector<DevicePosition> positions_; // in the order of the calls
    std::size_t next_ = 0;                  // all before it were taken or skipped in order
    std::vector<DevicePosition> skipped_;
    std::vector<Place> places_; // sorted by key; empty until a point is not in order
    bool isSorted_ = false;
};

} // namespace host
