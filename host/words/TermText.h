// SPDX-License-Identifier: MIT
// TermText: the kinds of records and their fields in words. They come as data, in English, because
// scripts read them, too. Stateless. [any]

#pragma once

#include <gps/GPSOutputReceiver.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// @param term  a kind or a field: "tracks", "route point", "geocacheHint"
/// @return      any other text as it is
[[nodiscard]] std::string termText(std::string_view term);

/// "waypoints, tracks"
[[nodiscard]] std::string kindsText(const std::vector<gps::TransferKind>& kinds);

/// "1 route point", "1,204 track points". Any other noun stays as it is.
/// @param noun  in the singular
[[nodiscard]] std::string countText(std::string_view noun, std::size_t count);

/// The field of so many records: "comment", "comments". Any other field stays as it is.
/// @param field  in the singular
[[nodiscard]] std::string fieldText(std::string_view field, std::size_t count);

} // namespace host
