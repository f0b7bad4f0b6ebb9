// SPDX-License-Identifier: MIT
// SentenceList: a list of records -> their sentences, for the kinds whose records each are one.
// Stateless: [any] thread.

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

using SentenceMaker = std::optional<std::string> (*)(const gps::GPSPoint& point,
                                                     const gps::Dictionary& record);

/// What a record without a point does to its list.
enum class MissingPoint { kLeavesItOut, kEndsTheList };

/// Makes one sentence a record, in the list's order. A record without a point, or that cannot be
/// written, is logged.
/// @param kind  the word for a record in the log
/// @return      none when a record without a point ended the list
[[nodiscard]] std::optional<std::vector<std::string>> makeSentences(const gps::Array& list,
                                                                    std::string_view kind,
                                                                    SentenceMaker make,
                                                                    MissingPoint missingPoint);

} // namespace magellan
