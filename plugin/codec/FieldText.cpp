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
    std::string text = magellanStringFromDictionary(record, key);
    if (text.size() > kLongestName)
        text.resize(kLongestName); // all ASCII by now, so a byte is a character
    return text;
}

std::string magellanStringFromDictionary(const gps::Dictionary& record, std::string_view key)
{
    const auto* text = record.findString(key);
    return text != nullptr ? gps::stringByRemovingCharactersNotInSet(*text, deviceCharacterSet())
                           : std::string{};
}

void setInDictionary(gps::Dictionary& record, std::string_view key, std::size_t index,
                     const SentenceFields& fields)
{
    if (fields.count() >= index)
        record.setText(key, fields.at(index));
}

} // namespace magellan
