// SPDX-License-Identifier: MIT
// EmptyRecords: routes and tracks without points, which hold nothing that a device could show. A
// `send` leaves them out. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <string>
#include <string_view>
#include <vector>

namespace host {

struct EmptyRecord {
    std::string_view kind; ///< "route" or "track"
    std::string name;      ///< empty if it has none
};

/// The routes and tracks without points in a data dictionary.
[[nodiscard]] std::vector<EmptyRecord> emptyRecordsIn(const gps::Dictionary& data);

/// Removes the routes and tracks without points from a data dictionary, and the key of a list that
/// becomes empty.
/// @return  what was removed, in its order
[[nodiscard]] std::vector<EmptyRecord> removeEmptyRecords(gps::Dictionary& data);

} // namespace host
