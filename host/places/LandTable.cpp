// SPDX-License-Identifier: MIT
// The bytes are part of the program's constants, so only the pages that are read take memory.

#include "host/places/LandTable.h"

#include <bit>

extern "C" const std::uint32_t hostLand[]; // in places.S

namespace host {

static_assert(std::endian::native == std::endian::little, "the table has this order");
static_assert(sizeof(LandPoint) == 4);

LandTable::LandTable() noexcept
    : size_(hostLand[0]), starts_(hostLand + 1),
      points_(reinterpret_cast<const LandPoint*>(starts_ + size_ + 1))
{}

const LandTable& LandTable::shared() noexcept
{
    static const LandTable table;
    return table;
}

} // namespace host
