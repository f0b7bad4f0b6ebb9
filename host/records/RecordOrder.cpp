// SPDX-License-Identifier: MIT
// Rows are compared by keys that are computed once for each row: comparing two names takes long.

#include "host/records/RecordOrder.h"

#include "host/points/TrackFigures.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace host {
namespace {

using Indices = std::vector<std::uint32_t>;

std::vector<std::string> wordsOf(const std::string& search)
{
    std::vector<std::string> words;
    std::string word;
    for (const char c : searchKey(search) + " ") {
        if (c != ' ')
            word += c;
        else if (!word.empty())
            words.push_back(std::exchange(word, {}));
    }
    return words;
}

Indices found(const std::vector<RecordRow>& rows, const std::string& search)
{
    const auto words = wordsOf(search);
    Indices indices;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (std::all_of(words.begin(), words.end(), [&](const std::string& word) {
                return rows[i].searched.find(word) != std::string::npos;
            }))
            indices.push_back(static_cast<std::uint32_t>(i));
    }
    return indices;
}

// Names of nothing come last.
class NameKeys {
public:
    NameKeys()
    {
        UErrorCode status = U_ZERO_ERROR;
        collator_.reset(icu::Collator::createInstance(locale(), status));
        if (U_FAILURE(status) != 0) {
            collator_.reset();
            return;
        }
        collator_->setStrength(icu::Collator::SECONDARY);
        collator_->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status); // "Day 2", then "Day 10"
    }

    [[nodiscard]] std::optional<std::string> operator()(const RecordRow& row) const
    {
        if (row.name.empty())
            return std::nullopt;
        if (!collator_)
            return row.name;
        std::array<std::uint8_t, 1024> key{};
        const auto size =
            collator_->getSortKey(icu::UnicodeString::fromUTF8(row.name), key.data(), key.size());
        return std::string{reinterpret_cast<const char*>(key.data()),
                           std::min(static_cast<std::size_t>(size), key.size())};
    }

private:
    // In the locale of programs, "Z" comes before "a".
    static const icu::Locale& locale()
    {
        const auto& user = icu::Locale::getDefault();
        return std::string_view{user.getVariant()} == "POSIX" ? icu::Locale::getRoot() : user;
    }

    std::unique_ptr<icu::Collator> collator_;
};

std::optional<double> kindOf(const RecordRow& row)
{
    return static_cast<double>(row.kind) + (row.isGeocache ? 1 : 0);
}

std::optional<double> distanceOf(const RecordRow& row,
                                 const std::optional<gps::GPSPoint>& reference)
{
    if (!row.position || !reference)
        return std::nullopt;
    return kilometresBetween(*row.position, *reference);
}

template <typename Key, typename KeyOf> void
sortBy(const std::vector<RecordRow>& rows, Indices& indices, bool isDescending, const KeyOf& keyOf)
{
    std::vector<std::optional<Key>> keys(rows.size());
    for (const auto i : indices)
        keys[i] = keyOf(rows[i]);
    std::stable_sort(indices.begin(), indices.end(), [&](std::uint32_t a, std::uint32_t b) {
        if (!keys[a] || !keys[b])
            return keys[a].has_value() && !keys[b].has_value();
        return isDescending ? *keys[b] < *keys[a] : *keys[a] < *keys[b];
    });
}

} // namespace

std::vector<std::uint32_t> arranged(const std::vector<RecordRow>& rows,
                                    const RecordArrangement& arrangement)
{
    auto indices = found(rows, arrangement.search);
    const bool isDescending = arrangement.isDescending;
    switch (arrangement.sorting) {
    case RecordSorting::kAsReceived:
        if (isDescending)
            std::reverse(indices.begin(), indices.end());
        break;
    case RecordSorting::kName:
        sortBy<std::string>(rows, indices, isDescending, NameKeys{});
        break;
    case RecordSorting::kKind:
        sortBy<double>(rows, indices, isDescending, kindOf);
        break;
    case RecordSorting::kDate:
        sortBy<std::int64_t>(rows, indices, isDescending,
                             [](const RecordRow& row) { return row.first; });
        break;
    case RecordSorting::kLength:
        sortBy<double>(rows, indices, isDescending,
                       [](const RecordRow& row) { return row.metres; });
        break;
    case RecordSorting::kDistance:
        sortBy<double>(rows, indices, isDescending, [&](const RecordRow& row) {
            return distanceOf(row, arrangement.reference);
        });
        break;
    }
    return indices;
}

} // namespace host
