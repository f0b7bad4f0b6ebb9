// SPDX-License-Identifier: MIT
// A geocache's further data as the XML element that GPX documents carry. Stateless: [any] thread.
// Source of the form: the cache 1.0 schema, http://www.groundspeak.com/cache/1/0.

#pragma once

#include <string>
#include <string_view>

namespace gps {
class Dictionary;
}

namespace host {

/// Appends one `groundspeak:cache` element with what the record tells; empty texts are left out.
void appendGeocache(std::string& out, const gps::Dictionary& record);

/// A receiver's date text "DDMMYY" as "YYYY-MM-DDT00:00:00Z" (80-99 are 1980-1999); any other text
/// as it stands.
[[nodiscard]] std::string dateTimeOf(std::string_view dayMonthYear);

} // namespace host
