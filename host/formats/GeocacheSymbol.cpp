// SPDX-License-Identifier: MIT
// Any text in the field counts as a date, as it does on the receiver.

#include "host/formats/GeocacheSymbol.h"

#include <gps/Geocache.h>
#include <gps/Value.h>

namespace host {

std::optional<std::string_view> correctedSymbol(const gps::Dictionary& record)
{
    const auto* const present = record.findString("symbol");
    if (present == nullptr ||
        (*present != gps::kGeocacheSymbol && *present != gps::kFoundGeocacheSymbol))
        return std::nullopt;
    const auto* const date = record.findString("dateFound");
    const bool isFound = date != nullptr && !date->empty();
    const auto symbol = isFound ? gps::kFoundGeocacheSymbol : gps::kGeocacheSymbol;
    return *present != symbol ? std::optional{symbol} : std::nullopt;
}

} // namespace host
