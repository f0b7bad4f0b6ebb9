// SPDX-License-Identifier: MIT
// The XML element in which GPX documents carry a geocache's own data. Used by GpxWriter. Stateless.
// [any] Source of the format: the cache 1.0 schema, http://www.groundspeak.com/cache/1/0.

#pragma once

#include <string>
#include <string_view>

namespace gps {
class Dictionary;
}

namespace host {

class Output;

/// Writes one `groundspeak:cache` element with the record's cache fields. Empty fields are omitted.
void writeGeocache(Output& out, const gps::Dictionary& record);

/// Converts a receiver's date "DDMMYY" to "YYYY-MM-DDT00:00:00Z" (years 80-99 are 1980-1999, 00-79
/// are 2000-2079). Returns any other text unchanged.
[[nodiscard]] std::string dateTimeOf(std::string_view dayMonthYear);

/// The same without the time: "YYYY-MM-DD".
[[nodiscard]] std::string dayOf(std::string_view dayMonthYear);

} // namespace host
