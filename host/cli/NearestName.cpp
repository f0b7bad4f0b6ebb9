// SPDX-License-Identifier: MIT

#include "host/cli/NearestName.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kMostChanges = 3;

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

} // namespace

std::string nearestName(std::string_view word, const std::vector<std::string>& names)
{
    std::string nearest;
    std::size_t fewest = kMostChanges + 1;
    for (const auto& name : names) {
        const auto changes = editDistance(word, name);
        if (changes < fewest && changes * 2 < name.size()) {
            fewest = changes;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace host
