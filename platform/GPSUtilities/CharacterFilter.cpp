// SPDX-License-Identifier: MIT
// Works on bytes: every byte of a UTF-8 character outside ASCII is above 127, so it is in no set.

#include "CharacterFilter.h"

#include <algorithm>
#include <iterator>

namespace gps {

CharacterSet::CharacterSet(std::string_view characters)
{
    for (const char c : characters)
        members_.set(static_cast<unsigned char>(c));
}

std::string stringByRemovingCharactersNotInSet(std::string_view text, const CharacterSet& set)
{
    std::string kept;
    kept.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
                 [&set](char c) { return set.contains(c); });
    return kept;
}

} // namespace gps
