// SPDX-License-Identifier: MIT
// ExactNames: names and texts that are to be sent as they are. A receiver stores some characters of
// them only, so two names can become one, and a name nothing. `send --exact-names` and `send
// --data` look for that before they plan. Stateless. [any]

#pragma once

#include "host/fitting/NameFitting.h"
#include "host/fitting/RecordList.h"

#include <gps/Value.h>

#include <string>
#include <vector>

namespace host {

/// Why two records would be one, or one would have no name. Both texts are without a full stop.
struct NameConflict {
    std::string description;
    std::string advice; ///< ends in "in the file"
};

/// What becomes of the names and texts.
struct ExactNames {
    std::vector<TextChange> changes{}; ///< those that the receiver does not store as they are

    /// The records that would be one, and those without a name.
    std::vector<NameConflict> conflicts{};
};

/// Gives each record the name and the texts that the receiver stores for it: without the characters
/// that it lacks, and names cut at its limit.
///
/// - Records of one name are different if the receiver stores different things for them.
/// - A name that changes must not become that of a different record on the receiver. A name that
///   stays is meant to replace it.
/// - A driver numbers the points of routes whose names clash, so only a name that is too long for a
///   number is a conflict.
///
/// @param data      the records to send; changed in place
/// @param onDevice  visits the records that the receiver holds, and under kRoutePointKey its points
///                  that no route uses
[[nodiscard]] ExactNames storeExactNames(gps::Dictionary& data, const RecordSource& onDevice,
                                         const TextRules& rules);

} // namespace host
