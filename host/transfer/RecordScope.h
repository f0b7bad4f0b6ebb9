// SPDX-License-Identifier: MIT
// RecordScope: the records of a data dictionary among which a name is that of one record only, and
// when two of them are the same. Used wherever a send looks for its records by name. Stateless.
// [any]

#pragma once

#include "host/transfer/RecordComparison.h"

#include <gps/Value.h>

#include <cstddef>
#include <functional>
#include <string_view>

namespace host {

struct RecordScope {
    std::string_view kind;                           ///< "waypoint", "geocache" or "route"
    const char* key;                                 ///< of the list that the records are in
    bool (*contains)(const gps::Dictionary& record); ///< which records of that list
    bool (*areSame)(RecordComparison& comparison, const gps::Dictionary& a,
                    const gps::Dictionary& b);
};

extern const RecordScope kWaypointScope;
extern const RecordScope kGeocacheScope;
extern const RecordScope kRouteScope;

/// Removes the records under a key for which `isRemoved` returns true, and the key with the last of
/// them. Calls it for every record, in order, before it removes the first.
void removeRecords(gps::Dictionary& data, std::string_view key,
                   const std::function<bool(const gps::Dictionary& record)>& isRemoved);

} // namespace host
