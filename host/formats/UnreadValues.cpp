// SPDX-License-Identifier: MIT
// Only the first text is kept: a file that is wrong once is often wrong in each of its points.

#include "host/formats/UnreadValues.h"

#include "host/base/Text.h"
#include "host/formats/XmlFile.h"

#include <fmt/format.h>

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
    const auto add = [&](const Kind& kind, const char* one, const char* many, const char* oneIs,
                         const char* manyAre) {
        constexpr std::size_t kMostShown = 40; // characters
        if (kind.count == 0)
            return;
        const auto text = displayText(kind.first, kMostShown);
        const auto what = kind.count == 1 ? fmt::format(R"({}, "{}", so it {})", one, text, oneIs)
                                          : fmt::format(R"({} {}, the first one "{}", so they {})",
                                                        kind.count, many, text, manyAre);
        sentences.push_back(*file.errorAt(kind.offset, what, "", kind.moreLines).description() +
                            '.');
    };
    constexpr auto* kWasLeftOut = "was left out";
    constexpr auto* kWereLeftOut = "were left out";
    add(elevations_, "an elevation is not a number of metres",
        "elevations are not numbers of metres", kWasLeftOut, kWereLeftOut);
    add(times_, "a time is not of the form 2024-06-01T12:00:00Z",
        "times are not of the form 2024-06-01T12:00:00Z", kWasLeftOut, kWereLeftOut);
    add(uncountedTimes_, "a time is not from 1980 to 9999", "times are not from 1980 to 9999",
        "counts as unknown", "count as unknown");
    return sentences;
}

} // namespace host
