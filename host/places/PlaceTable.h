// SPDX-License-Identifier: MIT
// The table of the world's places with at least 1,000 inhabitants, as embed.py has built it into
// the program: little-endian, in this order, without gaps:
//
//     number of time zones                     uint32
//     index of the first record of each band   uint32, 181 of them: bands of one degree of latitude
//                                              from the south, then the number of records
//     text of each time zone                   uint32: an offset into the texts
//     records                                  PlaceRecord, in a band by longitude
//     texts                                    each ended by a zero byte
//
// Used by Places only. Never changes. [any]

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace host {

/// Latitude and longitude are in thousandths of a degree.
struct PlaceRecord {
    std::int32_t latitude;
    std::int32_t longitude;
    std::uint32_t text; ///< an offset: the two letters of the country, and the name
    std::uint16_t zone;
    std::uint16_t hundreds; ///< of inhabitants; 65,535: that many or more
};

class PlaceTable {
public:
    static constexpr int kBands = 180;

    static const PlaceTable& shared() noexcept;

    /// The records of a band, by longitude. @param band  0 is the band at the south pole
    [[nodiscard]] std::span<const PlaceRecord> band(int band) const noexcept
    {
        return {records_ + bands_[band], bands_[band + 1] - bands_[band]};
    }
    [[nodiscard]] std::string_view text(std::uint32_t offset) const noexcept
    {
        return texts_ + offset;
    }
    [[nodiscard]] std::string_view zone(std::uint16_t index) const noexcept
    {
        return text(zones_[index]);
    }

private:
    PlaceTable() noexcept;

    const std::uint32_t* bands_;
    const std::uint32_t* zones_;
    const PlaceRecord* records_;
    const char* texts_;
};

} // namespace host
