// SPDX-License-Identifier: MIT
// Which rows of a list are shown for a search, and in which order. Stateless. [any]

#pragma once

#include "host/records/RecordRow.h"

#include <gps/GPSPoint.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

enum class RecordSorting { kAsReceived, kName, kKind, kDate, kLength, kDistance };

struct RecordArrangement {
    std::string search{}; ///< each of its words has to be found; empty: all rows are shown
    RecordSorting sorting = RecordSorting::kAsReceived;
    bool isDescending = false;
    std::optional<gps::GPSPoint> reference{}; ///< distances are from here; nullopt: none is known
};

/// The indices of the rows to show. Rows that are equal keep their order. Those without what is
/// sorted by come last in either direction.
[[nodiscard]] std::vector<std::uint32_t> arranged(const std::vector<RecordRow>& rows,
                                                  const RecordArrangement& arrangement);

} // namespace host
