// SPDX-License-Identifier: MIT
// The one step behind both list makers.

#include "SentenceList.h"

#include "CodecLog.h"

namespace magellan {

bool visitSentenceOf(const gps::Value& element, const SentenceListKind& kind,
                     const std::function<void(std::string_view sentence)>& visit)
{
    const auto* record = element.as<gps::Dictionary>();
    const auto* point = record != nullptr ? gps::findPoint(*record) : nullptr;
    if (point == nullptr) {
        logMissingPoint(kind.name, element);
        return kind.missingPoint == MissingPoint::kSkipRecord;
    }
    if (const auto sentence = kind.make(*point, *record))
        visit(*sentence);
    else
        logFailedSentence(element);
    return true;
}

std::optional<std::vector<std::string>> makeSentences(const gps::Array& list,
                                                      const SentenceListKind& kind)
{
    std::vector<std::string> sentences;
    sentences.reserve(list.size());
    const auto add = [&](std::string_view sentence) { sentences.emplace_back(sentence); };
    for (const auto& element : list) {
        if (!visitSentenceOf(element, kind, add))
            return std::nullopt;
    }
    return sentences;
}

} // namespace magellan
