// SPDX-License-Identifier: MIT
// ExactNames: names and texts that are to be sent as they are. A receiver stores some characters of
// them only, so two names can become one, and a name nothing. `send --exact-names` looks for that
// before it plans. Stateless. [any]

#pragma once

#include "host/fitting/NameFitting.h"
#include "host/fitting/RecordList.h"

#include <gps/Error.h>
#include <gps/Value.h>

#include <optional>
#include <vector>

namespace host {

/// What becomes of the names and texts.
struct ExactNames {
    std::vector<TextChange> changes{}; ///< those that the receiver does not store as they are

    /// The first two records that would be one, or the first without a name. They must not be sent.
    std::optional<gps::Error> conflict{};
};

/// Gives each record the name and the texts that the receiver stores for it: without the characters
/// that it lacks, and names cut at its limit.
///
/// - Waypoints, and routes, of one name are different if their positions are. Geocaches are
///   different if their names were.
/// - A name that changes must not become that of another record on the receiver. A name that stays
///   is meant to replace it.
/// - A driver numbers the points of routes whose names clash, so only a name that is too long for a
///   number is a conflict.
///
/// @param data      the records to send; changed in place
/// @param onDevice  visits the records that the receiver holds
[[nodiscard]] ExactNames storeExactNames(gps::Dictionary& data, const RecordSource& onDevice,
                                         const TextRules& rules);

} // namespace host
