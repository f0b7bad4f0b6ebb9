// SPDX-License-Identifier: MIT
// The table of the world's coasts, as embed.py has built it into the program: little-endian, in
// this order, without gaps:
//
//     number of coasts                       uint32
//     index of the first point of each one   uint32, then the number of points
//     points                                 int16 each: longitude, latitude in 150ths of a degree
//
// Used by Coasts only. Never changes. [any]

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace host {

struct LandPoint {
    static constexpr double kUnitsPerDegree = 150;

    std::int16_t longitude;
    std::int16_t latitude;
};

class LandTable {
public:
    static const LandTable& shared() noexcept;

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    /// The points of a coast; the last one is joined to the first. Land and water alternate where
    /// coasts lie within each other.
    [[nodiscard]] std::span<const LandPoint> coast(std::size_t index) const noexcept
    {
        return {points_ + starts_[index], starts_[index + 1] - starts_[index]};
    }

private:
    LandTable() noexcept;

    std::size_t size_;
    const std::uint32_t* starts_;
    const LandPoint* points_;
};

} // namespace host
