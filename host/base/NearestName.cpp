// SPDX-License-Identifier: MIT
// The distance is Levenshtein's, computed row by row.

#include "host/base/NearestName.h"

#include <gps/Characters.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kMostChanges = 3;
constexpr std::size_t kShortestBeginning = 3;

// A name in lower case and without its hyphens: with them, "--keep" would share most of its
// characters with "--help".
std::string lettersOf(std::string_view name)
{
    std::string letters{name.substr(std::min(name.find_first_not_of('-'), name.size()))};
    for (char& c : letters)
        c = gps::lowerCase(c);
    return letters;
}

std::size_t editDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t change = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

// Someone who types the beginning of a name has most likely abbreviated it: that counts as one
// change, however long the rest is.
std::size_t changesBetween(std::string_view word, std::string_view name)
{
    if (word.size() >= kShortestBeginning && name.starts_with(word))
        return word == name ? 0 : 1;
    return editDistance(word, name);
}

} // namespace

std::string nearestName(std::string_view word, const std::vector<std::string>& names)
{
    std::string nearest;
    std::size_t fewest = kMostChanges + 1;
    const auto typed = lettersOf(word);
    for (const auto& name : names) {
        const auto letters = lettersOf(name);
        const auto changes = changesBetween(typed, letters);
        // Changing half of a short name's letters makes it nearly any other name.
        if (changes < fewest && changes * 2 < letters.size()) {
            fewest = changes;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace host
