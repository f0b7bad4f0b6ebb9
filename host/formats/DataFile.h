// SPDX-License-Identifier: MIT
// DataFile: a JSON file that holds the very data dictionary of a send. Stateless: [any] thread.

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <optional>
#include <string>

namespace host {

/// Reads a data dictionary as it stands: an object under "point" becomes a boxed point, whose
/// missing fields are 0; everything else keeps its key, its order and its value.
/// @param data  out: the dictionary; none where the file holds null. Untouched after a failure
/// @return      the file cannot be read, is no JSON object, or nests deeper than 64 levels
[[nodiscard]] std::optional<gps::Error> readDataFile(const std::string& path,
                                                     std::optional<gps::Dictionary>& data);

} // namespace host
