// SPDX-License-Identifier: MIT
// Only what is listed here is translated: another text may be one of the catalogue by chance.

#include "host/base/TermText.h"

#include "host/base/TranslatedFormat.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace host {
namespace {

constexpr std::array kTerms{
    // kinds
    marked("waypoints"),
    marked("geocaches"),
    marked("routes"),
    marked("tracks"),
    marked("waypoint"),
    marked("geocache"),
    marked("route"),
    marked("track"),
    marked("route point"),
    marked("track point"),
    // fields
    marked("name"),
    marked("comment"),
    marked("geocacheOwner"),
    marked("geocacheHint"),
    marked("geocacheType"),
    marked("datePlaced"),
    marked("dateFound"),
    marked("difficulty"),
    marked("terrain"),
};

struct Counted {
    std::string_view term;
    CountedText text;
};

constexpr std::array kNouns{
    Counted{"waypoint", marked("{} waypoint", "{} waypoints")},
    Counted{"geocache", marked("{} geocache", "{} geocaches")},
    Counted{"route", marked("{} route", "{} routes")},
    Counted{"route line", marked("{} route line", "{} route lines")},
    Counted{"route point", marked("{} route point", "{} route points")},
    Counted{"track", marked("{} track", "{} tracks")},
    Counted{"track segment", marked("{} track segment", "{} track segments")},
    Counted{"track point", marked("{} track point", "{} track points")},
};

constexpr std::array kFields{
    Counted{"comment", marked("comment", "comments")},
    Counted{"description", marked("description", "descriptions")},
    Counted{"link", marked("link", "links")},
    Counted{"type", marked("type", "types")},
    Counted{"number", marked("number", "numbers")},
    Counted{"source", marked("source", "sources")},
    Counted{"other value", marked("other values", "other values")}, // of one record, too
};

template <std::size_t size>
const CountedText* textOf(const std::array<Counted, size>& table, std::string_view term)
{
    const auto* const found = std::find_if(
        table.begin(), table.end(), [&](const Counted& counted) { return counted.term == term; });
    return found == table.end() ? nullptr : &found->text;
}

} // namespace

std::string termText(std::string_view term)
{
    const auto* const found = std::find(kTerms.begin(), kTerms.end(), term);
    return found == kTerms.end() ? std::string{term} : tr(*found);
}

std::string countText(std::string_view noun, std::size_t count, std::string_view number)
{
    const auto* const text = textOf(kNouns, noun);
    return text == nullptr ? fmt::format("{} {}", number, noun) : trCounted(count, *text, number);
}

std::string fieldText(std::string_view field, std::size_t count)
{
    const auto* const text = textOf(kFields, field);
    return text == nullptr ? std::string{field} : tr(*text, count);
}

} // namespace host
