// SPDX-License-Identifier: MIT
// The one loop behind both list makers.

#include "SentenceList.h"

#include "CodecLog.h"

#include <utility>

namespace magellan {

std::optional<std::vector<std::string>> makeSentences(const gps::Array& list, std::string_view kind,
                                                      SentenceMaker make, MissingPoint missingPoint)
{
    std::vector<std::string> sentences;
    sentences.reserve(list.size());
    for (const auto& element : list) {
        const auto* record = element.as<gps::Dictionary>();
        const auto* point = record != nullptr ? gps::findPoint(*record) : nullptr;
        if (point == nullptr) {
            logMissingPoint(kind, element);
            if (missingPoint == MissingPoint::kRejectList)
                return std::nullopt;
        } else if (auto sentence = make(*point, *record)) {
            sentences.push_back(std::move(*sentence));
        } else {
            logFailedSentence(element);
        }
    }
    return sentences;
}

} // namespace magellan
