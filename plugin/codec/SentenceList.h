// SPDX-License-Identifier: MIT
// SentenceList: a list of records -> one sentence each. Used by the waypoint and geocache kinds,
// and by the writers of their files. Stateless. [any]

#pragma once

#include <gps/Value.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {

using SentenceMaker = std::optional<std::string> (*)(const gps::GPSPoint& point,
                                                     const gps::Dictionary& record);

/// What to do about a record without a point.
enum class MissingPoint { kSkipRecord, kRejectList };

/// How one kind makes its sentences.
struct SentenceListKind {
    std::string_view name; ///< what the log calls a record
    SentenceMaker make;
    MissingPoint missingPoint;
};

/// Makes the sentence of one element of a list and visits it. A record without a point, or for
/// which `make` returns nullopt, is logged and skipped.
/// @return  false if the record has no point and the list is therefore rejected
[[nodiscard]] bool visitSentenceOf(const gps::Value& element, const SentenceListKind& kind,
                                   const std::function<void(std::string_view sentence)>& visit);

/// The sentences of all elements, in the list's order; nullopt if the list is rejected.
[[nodiscard]] std::optional<std::vector<std::string>> makeSentences(const gps::Array& list,
                                                                    const SentenceListKind& kind);

} // namespace magellan
