// SPDX-License-Identifier: MIT
// Record counts in words, for every command that prints them. Stateless. [any]

#pragma once

#include "host/transfer/RecordCounts.h"

#include <string>

namespace host {

/// "2 waypoints, 1 track (30 points)": only kinds that have records; empty if none has.
/// "30 track points" if their tracks do not count.
[[nodiscard]] std::string recordCountText(const RecordCounts& counts);

} // namespace host
