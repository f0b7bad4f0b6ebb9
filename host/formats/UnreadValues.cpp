// SPDX-License-Identifier: MIT
// Only the first text is kept: a file that is wrong once is often wrong in each of its points.

#include "host/formats/UnreadValues.h"

#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/formats/XmlFile.h"

namespace host {

void UnreadValues::Kind::add(const std::string& text, std::ptrdiff_t at, std::size_t linesBelow)
{
    if (text.empty())
        return;
    if (count++ > 0)
        return;
    first = text;
    offset = at;
    moreLines = linesBelow;
}

void UnreadValues::add(const UnreadTexts& texts, std::ptrdiff_t offset, std::size_t moreLines)
{
    elevations_.add(texts.elevation, offset, moreLines);
    times_.add(texts.time, offset, moreLines);
    uncountedTimes_.add(texts.uncountedTime, offset, moreLines);
}

std::vector<std::string> UnreadValues::sentences(const XmlFile& file) const
{
    std::vector<std::string> sentences;
    const auto add = [&](const Kind& kind, const CountedText& what) {
        constexpr std::size_t kMostShown = 40; // characters
        if (kind.count == 0)
            return;
        const auto text =
            trCounted(kind.count, what, kind.count, displayText(kind.first, kMostShown));
        sentences.push_back(*file.errorAt(kind.offset, text, "", kind.moreLines).description() +
                            '.');
    };
    add(elevations_, marked(R"(an elevation is not a number of metres, "{1}", so it was left out)",
                            R"({} elevations are not numbers of metres, the first one "{}", )"
                            R"(so they were left out)"));
    add(times_,
        marked(R"(a time is not of the form 2024-06-01T12:00:00Z, "{1}", so it was left out)",
               R"({} times are not of the form 2024-06-01T12:00:00Z, the first one "{}", )"
               R"(so they were left out)"));
    add(uncountedTimes_,
        marked(R"(a time is not from 1980 to 9999, "{1}", so it counts as unknown)",
               R"({} times are not from 1980 to 9999, the first one "{}", )"
               R"(so they count as unknown)"));
    return sentences;
}

} // namespace host
