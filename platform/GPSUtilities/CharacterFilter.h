// SPDX-License-Identifier: MIT
// Sets of ASCII characters, and the filter that removes all other characters from a text. Sets are
// constant after construction. [any]

#pragma once

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>

namespace gps {

/// A set of ASCII characters.
class CharacterSet {
public:
    explicit CharacterSet(std::string_view characters);

    [[nodiscard]] bool contains(char c) const noexcept
    {
        return members_[static_cast<unsigned char>(c)];
    }
    [[nodiscard]] bool containsAll(std::string_view text) const noexcept
    {
        return std::all_of(text.begin(), text.end(), [this](char c) { return contains(c); });
    }
    [[nodiscard]] std::size_t size() const noexcept { return members_.count(); }

private:
    std::bitset<256> members_;
};

/// `stringByRemovingCharactersNotInSet:`: the text without the characters outside the set. All
/// bytes of a character outside ASCII are removed. [any]
[[nodiscard]] std::string stringByRemovingCharactersNotInSet(std::string_view text,
                                                             const CharacterSet& set);

/// Appends that to another text. [any]
void appendCharactersInSet(std::string& out, std::string_view text, const CharacterSet& set);

} // namespace gps
