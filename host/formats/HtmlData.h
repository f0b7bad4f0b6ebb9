// SPDX-License-Identifier: MIT
// The members of the JSON object that the HTML page shows. Stateless. [any]

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Appends a JSON string that cannot end the script element around it, whatever the text contains.
void appendPageText(std::string& out, std::string_view text);

/// Writes a number, or null if it is not known.
/// @param at  has room for gps::kMostOfInteger characters
[[nodiscard]] char* putNumber(char* at, const std::optional<std::int64_t>& number);

/// Appends a whole number in few characters, none of which needs to be escaped in a JSON string of
/// the page. Each number ends by itself. host/page/model/digits.js reads them.
/// Precondition: the number is within 2^52 of zero, beyond which a script's numbers are not whole.
void appendDigits(std::string& out, std::int64_t number);

/// Each appends a key with its value, after a comma unless it is the first of its object.
void appendMember(std::string& out, std::string_view key, std::string_view text);
void appendMember(std::string& out, std::string_view key,
                  const std::optional<std::int64_t>& number);

/// Rounds to three decimals: metres in a number of kilometres.
void appendMember(std::string& out, std::string_view key, const std::optional<double>& number);

} // namespace host
