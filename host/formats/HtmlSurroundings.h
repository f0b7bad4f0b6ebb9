// SPDX-License-Identifier: MIT
// What the HTML page knows about the world around the records: where their areas are, the places in
// and around them, and the coasts. Stateless. [any]

#pragma once

#include "host/points/Areas.h"

#include <cstddef>
#include <string>
#include <vector>

namespace host {

inline constexpr std::size_t kMostDetailedAreas = 7; ///< with places and coasts: their size counts
inline constexpr std::size_t kMostAreaPlaces = 10;   ///< of each area

/// Appends the members "areas", "places" and "land" of the page's data.
void appendSurroundings(std::string& out, const std::vector<Area>& areas);

} // namespace host
