// SPDX-License-Identifier: MIT
// TermText: the kinds of records and their fields in words. They come as data, in English, because
// scripts read them, too. Stateless. [any]

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

/// @param term  a kind or a field: "tracks", "route point", "geocacheHint"
/// @return      any other text as it is
[[nodiscard]] std::string termText(std::string_view term);

/// "1 route point", "1,204 track points". Any other noun stays as it is.
/// @param noun    in the singular
/// @param number  the count as it is shown
[[nodiscard]] std::string countText(std::string_view noun, std::size_t count,
                                    std::string_view number);

/// The field of so many records: "comment", "comments". Any other field stays as it is.
/// @param field  in the singular
[[nodiscard]] std::string fieldText(std::string_view field, std::size_t count);

} // namespace host
