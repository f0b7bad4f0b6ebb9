// SPDX-License-Identifier: MIT
// The one step behind both list makers.

#include "SentenceList.h"

#include "CodecLog.h"

namespace magellan {

bool appendSentenceOf(const gps::Value& element, const SentenceListKind& kind,
                      std::string_view lineEnd, std::string& text)
{
    const auto* record = element.as<gps::Dictionary>();
    const auto* point = record != nullptr ? gps::findPoint(*record) : nullptr;
    if (point == nullptr) {
        logMissingPoint(kind.name, element);
        return kind.missingPoint == MissingPoint::kSkipRecord;
    }
    if (kind.append(text, *point, *record))
        text += lineEnd;
    else
        logFailedSentence(element);
    return true;
}

std::optional<std::vector<std::string>> makeSentences(const gps::Array& list,
                                                      const SentenceListKind& kind)
{
    std::vector<std::string> sentences;
    sentences.reserve(list.size());
    std::string sentence;
    for (const auto& element : list) {
        sentence.clear();
        if (!appendSentenceOf(element, kind, {}, sentence))
            return std::nullopt;
        if (!sentence.empty())
            sentences.push_back(sentence);
    }
    return sentences;
}

} // namespace magellan
