// SPDX-License-Identifier: MIT
// StoredRecord: what a receiver stores of a record, in a form that is small and quick to compare.
// Names are fitted with it: two records may share a name only if they are the same to a receiver,
// whatever their kind. Stateless. [any]

#pragma once

#include "host/points/DevicePosition.h"

#include <gps/Value.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Returns the code that a receiver stores for a symbol. Empty: the symbol itself.
using SymbolCode = std::function<std::string(std::string_view symbol)>;

/// What a receiver stores of a record except its name.
struct StoredRecord {
    /// The record's own, or that of a route's first point. Nullopt: no receiver stores the record,
    /// which is the same as no other.
    std::optional<DevicePosition> position;

    /// A hash of everything else. Different texts have the same one once in 2^64 times.
    std::size_t details = 0;

    /// Whether a receiver may store the same for both, after it has rounded one of them.
    [[nodiscard]] bool isSame(const StoredRecord& other) const noexcept
    {
        return position && other.position && position->matches(*other.position) &&
               details == other.details;
    }

    /// Whether a receiver that stores both holds the same for both.
    [[nodiscard]] bool isSameOnReceiver(const StoredRecord& other) const noexcept
    {
        return position && position == other.position && details == other.details;
    }
};

/// Of a waypoint or a route's point: the altitude, the symbol and the comment.
[[nodiscard]] StoredRecord storedWaypoint(const gps::Dictionary& record, const SymbolCode& code);

/// Of a geocache: the altitude and all texts.
[[nodiscard]] StoredRecord storedGeocache(const gps::Dictionary& record);

/// Of a route: the comment, and all points in their order, with their names and exact positions.
[[nodiscard]] StoredRecord storedRoute(const gps::Dictionary& record, const SymbolCode& code);

} // namespace host
