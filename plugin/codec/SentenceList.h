// SPDX-License-Identifier: MIT
// SentenceList: a list of records -> one sentence each. Used by the waypoint and geocache kinds.
// Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

using SentenceMaker = std::optional<std::string> (*)(const gps::GPSPoint& point,
                                                     const gps::Dictionary& record);

/// What to do about a record without a point.
enum class MissingPoint { kSkipRecord, kRejectList };

/// Makes one sentence per record, in the list's order. A record without a point, or for which
/// `make` returns nullopt, is logged and skipped.
/// @param kind  what the log calls a record
/// @return      nullopt if a record has no point and the list is therefore rejected
[[nodiscard]] std::optional<std::vector<std::string>> makeSentences(const gps::Array& list,
                                                                    std::string_view kind,
                                                                    SentenceMaker make,
                                                                    MissingPoint missingPoint);

} // namespace magellan
