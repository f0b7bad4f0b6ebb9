// SPDX-License-Identifier: MIT
// SentenceList: a list of records -> one sentence each. Used by the waypoint and geocache kinds,
// and by the writers of their files. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

/// Appends the sentence of one record to a text.
/// @return  whether it has one. If not, the text is unchanged
using SentenceAppender = bool (*)(std::string& text, const gps::GPSPoint& point,
                                  const gps::Dictionary& record);

/// What to do about a record without a point.
enum class MissingPoint { kSkipRecord, kRejectList };

/// How one kind makes its sentences.
struct SentenceListKind {
    std::string_view name; ///< what the log calls a record
    SentenceAppender append;
    MissingPoint missingPoint;
};

/// Appends the sentence of one element of a list and `lineEnd` to a text. A record without a point,
/// or without a sentence, is logged and skipped.
/// @return  false if the record has no point and the list is therefore rejected
[[nodiscard]] bool appendSentenceOf(const gps::Value& element, const SentenceListKind& kind,
                                    std::string_view lineEnd, std::string& text);

/// The sentences of all elements, in the list's order; nullopt if the list is rejected.
[[nodiscard]] std::optional<std::vector<std::string>> makeSentences(const gps::Array& list,
                                                                    const SentenceListKind& kind);

} // namespace magellan
