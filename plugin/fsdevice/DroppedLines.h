// SPDX-License-Identifier: MIT
// DroppedLines: what a merge loses of the file that it replaces. Part of the planning before a
// send, so that the user learns of it. Stateless. [any]

#pragma once

#include <gps/GPSTransferAccount.h>

#include <cstddef>
#include <string_view>

namespace magellan {

/// Counts the lines of a file of waypoints or geocaches that give no record that a merge keeps:
/// damaged ones, those of another kind, records without a name, and all but the last record of a
/// name. Empty lines, the closing sentence and acknowledgements do not count.
/// @param account  of the file's lines
[[nodiscard]] std::size_t droppedLines(const gps::LineAccount& account) noexcept;

/// Does the same for a file of routes, where a route that is not complete is lost, too.
[[nodiscard]] std::size_t droppedRouteLines(std::string_view present);

} // namespace magellan
