// SPDX-License-Identifier: MIT
// Works on bytes: every byte of a UTF-8 character outside ASCII is above 127, so it is in no set.

#include "CharacterFilter.h"

#include <algorithm>
#include <cstddef>

namespace gps {

CharacterSet::CharacterSet(std::string_view characters)
{
    for (const char c : characters)
        members_.set(static_cast<unsigned char>(c));
}

std::string stringByRemovingCharactersNotInSet(std::string_view text, const CharacterSet& set)
{
    std::string kept;
    appendCharactersInSet(kept, text, set);
    return kept;
}

void appendCharactersInSet(std::string& out, std::string_view text, const CharacterSet& set)
{
    const auto begin = static_cast<std::ptrdiff_t>(out.size());
    out += text;
    out.erase(
        std::remove_if(out.begin() + begin, out.end(), [&set](char c) { return !set.contains(c); }),
        out.end());
}

} // namespace gps
