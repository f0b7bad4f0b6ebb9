// SPDX-License-Identifier: MIT
// DataCheck: looks for mistakes in a data dictionary that somebody has written by hand. A driver
// takes a value of an unexpected type for a missing one, and so would send nothing, or a point at
// 0, without a word. Used by DataFile. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// A mistake and what to do about it, each without its full stop.
struct DataFault {
    std::string description; ///< names the record and the key
    std::string advice;
};

/// Returns the first mistake: a key that is neither "waypoint" nor "route" nor "track"; something
/// else than an array of objects under one of them, or under the "points" of a route or track; a
/// "point" that is not an object, or with a key that points do not have, or with a value that is
/// not a number; a text of a record that is not a string. Other keys of records may hold anything.
/// @param data     as it was read: points are still dictionaries
/// @param remarks  gets a sentence for each key of records that no driver is known to read, such as
///                 "coment": how many records have it, and which key was probably meant
[[nodiscard]] std::optional<DataFault> findDataFault(const gps::Dictionary& data,
                                                     std::vector<std::string>& remarks);

} // namespace host
