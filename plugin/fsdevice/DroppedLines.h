// SPDX-License-Identifier: MIT
// DroppedLines: what a merge loses of the file that it replaces. Part of the planning before a
// send, so that the user learns of it. Stateless. [any]

#pragma once

#include "../common/RecordKind.h"

#include <cstddef>
#include <string_view>

namespace magellan {

/// Counts the lines of a default file that give no record that a merge keeps: damaged ones, those
/// of another kind, records without a name, all but the last record of a name, and routes that are
/// not complete. Empty lines and the closing sentence do not count.
/// @throws gps::RangeError  the file has a truncated sentence
[[nodiscard]] std::size_t droppedLines(RecordKind kind, std::string_view present);

} // namespace magellan
