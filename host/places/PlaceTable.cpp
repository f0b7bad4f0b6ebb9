// SPDX-License-Identifier: MIT
// The bytes are part of the program's constants, so only the pages that are read take memory.

#include "host/places/PlaceTable.h"

#include <bit>

extern "C" const std::uint32_t hostPlaces[]; // in places.S

namespace host {

static_assert(std::endian::native == std::endian::little, "the table has this order");
static_assert(sizeof(PlaceRecord) == 16);

PlaceTable::PlaceTable() noexcept
    : bands_(hostPlaces + 1), zones_(bands_ + kBands + 1),
      records_(reinterpret_cast<const PlaceRecord*>(zones_ + hostPlaces[0])),
      texts_(reinterpret_cast<const char*>(records_ + bands_[kBands]))
{}

const PlaceTable& PlaceTable::shared() noexcept
{
    static const PlaceTable table;
    return table;
}

} // namespace host
