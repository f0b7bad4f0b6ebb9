// SPDX-License-Identifier: MIT
// Values as JSON text, in the forms that scripts read, and back. Stateless: [any] thread.

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Appends a string with its quotes; bytes that are no UTF-8 are replaced.
void appendJson(std::string& out, std::string_view text);

/// Appends an object's next key with its colon, and the comma before it where it is not the first.
/// Precondition: the text ends within that object.
void appendJsonKey(std::string& out, std::string_view key);

/// Appends a point: its five fields, each number in the shortest form that reads back; one that is
/// not finite is null.
void appendJson(std::string& out, const gps::GPSPoint& point);

/// Appends a record: every key in its order, boxed points as points.
void appendJson(std::string& out, const gps::Dictionary& record);

/// Appends any value; a status object, or none, is null.
void appendJsonValue(std::string& out, const gps::Value& value);

/// Appends an error: domain, code, description, suggestion and path, null for what it lacks.
void appendJson(std::string& out, const gps::Error& error);

/// Appends a string, or null for none.
void appendJsonOrNull(std::string& out, const std::optional<std::string>& text);

/// Where a text goes on, or ends, as no JSON does: an offset of at most its size; none where it is
/// JSON.
[[nodiscard]] std::optional<std::size_t> endOfJson(std::string_view text);

/// Reads a JSON object as a dictionary: its keys in their order, whole numbers as 64-bit integers,
/// null as a missing key.
/// @return  none when the text is no JSON object, or one nested deeper than 64 levels
[[nodiscard]] std::optional<gps::Dictionary> readJsonObject(std::string_view text);

} // namespace host
