// SPDX-License-Identifier: MIT
// DataFile: reads the data dictionary of a send from a JSON file, for `send --data`. Stateless.
// [any]

#pragma once

#include <gps/Error.h>
#include <gps/Value.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// Reads a data dictionary. An object under "point" becomes a boxed point, whose missing fields are
/// 0; everything else keeps its key, its order and its value.
/// @param data     out: the dictionary, or nullopt if the file holds `null`. Unchanged after a
/// failure
/// @param remarks  gets what findDataFault() remarks, each with the file's name
/// @return         an error if the file cannot be read, is not a JSON object, has a key twice in
///                 one object, nests deeper than 64 levels, or has a mistake that findDataFault()
///                 finds
[[nodiscard]] std::optional<gps::Error> readDataFile(const std::string& path,
                                                     std::optional<gps::Dictionary>& data,
                                                     std::vector<std::string>& remarks);

} // namespace host
