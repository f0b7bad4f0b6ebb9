// SPDX-License-Identifier: MIT
// Writes values as JSON, in the forms that the event lines and the map files share, and reads JSON
// objects. Stateless. [any]

#pragma once

#include <gps/Error.h>
#include <gps/NumberText.h>
#include <gps/Value.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Appends a string in quotes. Invalid UTF-8 is replaced by U+FFFD.
void appendJson(std::string& out, std::string_view text);

/// Appends the next key of an object with its colon, after a comma unless the key is the first one.
/// Precondition: the text ends with the object's "{" or with one of its members.
void appendJsonKey(std::string& out, std::string_view key);

/// Appends a point as an object with its five fields. Each number has the shortest form that reads
/// back to the same value; one that is not finite becomes null.
void appendJson(std::string& out, const gps::GPSPoint& point);

/// Writes what appendJson() appends for a point.
/// @param at  has room for kMostOfJsonPoint characters
/// @return    the end of what was written
[[nodiscard]] char* putJson(char* at, const gps::GPSPoint& point);
inline constexpr std::size_t kMostOfJsonPoint =
    100 + 3 * gps::kMostOfShortest + 2 * gps::kMostOfInteger;

/// Appends a record as an object with every key, in the record's order.
void appendJson(std::string& out, const gps::Dictionary& record);

/// Appends any value. A missing value and a status object become null.
void appendJsonValue(std::string& out, const gps::Value& value);

/// Appends an error: domain, code, description, suggestion and path; null for each that is missing.
void appendJson(std::string& out, const gps::Error& error);

/// Appends a string, or null for nullopt.
void appendJsonOrNull(std::string& out, const std::optional<std::string>& text);

/// The offset of the first syntax error, or of a number that no double can hold, at most the
/// text's size; nullopt if there is neither.
[[nodiscard]] std::optional<std::size_t> jsonErrorOffset(std::string_view text);

/// A key that an object has twice.
struct RepeatedKey {
    std::string key;
    std::size_t offset; ///< behind its second occurrence
};

/// The first key that an object of a text has twice; nullopt if there is none before the first
/// syntax error. A key whose value is null counts as missing.
[[nodiscard]] std::optional<RepeatedKey> repeatedJsonKey(std::string_view text);

/// Reads a JSON object into a dictionary. Keeps the order of the keys; an integer becomes a 64-bit
/// integer, saturated; a key whose value is null is left out.
/// @return  nullopt if the text is not a JSON object, has a key twice in one object, or is nested
///          deeper than 64 levels
[[nodiscard]] std::optional<gps::Dictionary> readJsonObject(std::string_view text);

} // namespace host
