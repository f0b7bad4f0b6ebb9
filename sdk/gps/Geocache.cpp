// SPDX-License-Identifier: MIT
// The rule that separates geocaches from waypoints.

#include <gps/Geocache.h>
#include <gps/Value.h>

namespace gps {

bool isGeocache(const Dictionary& record)
{
    const auto* symbol = record.findString("symbol");
    return symbol != nullptr && symbol->starts_with(kGeocacheSymbol);
}

} // namespace gps
