// SPDX-License-Identifier: MIT
// Which geocaches a map file shows as found. Used by CollectionWriter. Stateless. [any]

#pragma once

#include <optional>
#include <string_view>

namespace gps {
class Dictionary;
}

namespace host {

/// The symbol that a map file has for a geocache: the found one only with a found date. Drivers use
/// it for each cache with a placed date, whether it was found or not.
/// @return  nullopt if the record's own symbol is right, or is neither of the two
[[nodiscard]] std::optional<std::string_view> correctedSymbol(const gps::Dictionary& record);

} // namespace host
