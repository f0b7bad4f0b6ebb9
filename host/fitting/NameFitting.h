// SPDX-License-Identifier: MIT
// NameFitting: rewrites the names and texts in a data dictionary so that a receiver can show them,
// and makes the names unique. `send` calls it before it hands the data to a driver. The caller
// supplies the receiver's rules. Stateless. [any]

#pragma once

#include "host/fitting/RecordList.h"
#include "host/fitting/StoredRecord.h"

#include <gps/Value.h>
#include <platform/GPSUtilities/CharacterFilter.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The texts that a receiver can store.
struct TextRules {
    gps::CharacterSet characters;
    std::size_t longestName; ///< characters; does not apply to geocaches

    SymbolCode symbolCode{};
};

/// One text that was rewritten.
struct TextChange {
    std::string_view kind; ///< "waypoint", "geocache", "route" or "route point"
    std::string_view key;  ///< "name", "comment" and so on
    std::string before;    ///< empty if the record had no name
    std::string after;     ///< only characters of the receiver
    std::string dropped;   ///< the characters that have no replacement, in their original order
};

/// Rewrites every text in the receiver's characters. Then gives every name that changed, is too
/// long, or is missing a replacement that is unique in the data and on the receiver. The result
/// depends only on the data and on what the receiver holds.
///
/// - A name that is already good is kept, and so replaces what the receiver holds under it. If
///   several records of one kind have the same good name and the receiver would store different
///   things for them, the first one keeps it. If it stores the same for them, they share a name.
/// - A route point gets the new name of the waypoint that had its old name: the one at the same
///   position, otherwise the first. If that name belongs to a different route point, in the data or
///   on the receiver, the route point gets a name of its own.
/// - What an earlier send put on the receiver gets the same name again. A name of the receiver goes
///   to no other record, and to none if several records of the receiver have it and differ.
/// - Symbols are not changed, because drivers look them up by name. Tracks are not changed, because
///   no receiver stores their names.
///
/// @param data      the records to send; changed in place
/// @param onDevice  visits the records that the receiver holds, and under kRoutePointKey its points
///                  that no route uses
/// @return          the changes: first all other texts, then the names. A name that several points
///                  share is listed once
[[nodiscard]] std::vector<TextChange> fitNames(gps::Dictionary& data, const RecordSource& onDevice,
                                               const TextRules& rules);

} // namespace host
