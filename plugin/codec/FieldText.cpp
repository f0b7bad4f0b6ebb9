// SPDX-License-Identifier: MIT
// Texts are filtered on writing only: whatever a receiver has stored is read as it is.

#include "FieldText.h"

#include "SentenceFields.h"

#include <gps/Value.h>

namespace magellan {

const gps::CharacterSet& deviceCharacterSet()
{
    // Never destroyed: a worker may still use it while the process exits.
    static const auto* const set = new gps::CharacterSet{kDeviceCharacters};
    return *set;
}

std::string magellanStringFromDictionary(const gps::Dictionary& record, std::string_view key,
                                         int /*length*/)
{
    std::string text;
    appendDeviceText(text, record, key, kLongestName);
    return text;
}

std::string magellanStringFromDictionary(const gps::Dictionary& record, std::string_view key)
{
    std::string text;
    appendDeviceText(text, record, key);
    return text;
}

void appendDeviceText(std::string& sentence, const gps::Dictionary& record, std::string_view key,
                      std::size_t longest)
{
    const auto* text = record.findString(key);
    if (text == nullptr)
        return;
    const auto begin = sentence.size();
    gps::appendCharactersInSet(sentence, *text, deviceCharacterSet());
    if (sentence.size() - begin > longest)
        sentence.resize(begin + longest); // all ASCII by now, so a byte is a character
}

void setInDictionary(gps::Dictionary& record, std::string_view key, std::size_t index,
                     const SentenceFields& fields)
{
    if (fields.count() >= index)
        record.setText(key, fields.at(index));
}

} // namespace magellan
