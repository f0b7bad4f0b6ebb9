// SPDX-License-Identifier: MIT
// What the map says instead of the records that it cannot show, or cannot show rightly. Stateless.
// [any]

#pragma once

#include "host/records/Export.h"
#include "host/window/map/MapRecords.h"

#include <string>

namespace host {

/// @param records  null: there are none yet
/// @return         one or two sentences; empty: everything is seen as it is
[[nodiscard]] std::string mapNote(const MapRecords* records, const TickedRecords& ticked);

} // namespace host
